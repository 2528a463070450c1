# Stand-in for a server of OpenPegasus: what it keeps, as the files of a folder.
repository=$root/srv/repository

! habit stopped || { complain "No server answers."; exit 1; }

folder() { echo "$repository/$(echo "$1" | tr / '#')"; }
