# shellcheck shell=sh
# What the turns of the object managers share: messages, programs that can be interrupted, and changes of files that
# can be taken back.

child='' # the program or the turn that is waited for
work=''  # a folder for what is made and for what it replaces
undo=''  # what takes back a change that is not one of files
steps=0

say() { echo "$self: $manager: $*"; }
# Ends this object manager's turn; the others still get theirs.
fail() { echo "$self: $manager: $*" >&2; exit 1; }

# within PATH: where it is below the root, which an installation with a prefix of its own may have in it already.
within() {
  case $1 in
    "$root"/*) echo "$1" ;;
    *) echo "$root$1" ;;
  esac
}

# program NAME [FOLDER...]: where it is; empty when it is not there.
program() {
  name=$1
  shift
  for folder in "$@" /usr/bin /usr/sbin /usr/local/bin /usr/local/sbin /opt/tog-pegasus/bin /bin /sbin; do
    [ -x "$(within "$folder")/$name" ] && { echo "$(within "$folder")/$name"; return; }
  done
  [ -n "$root" ] || command -v "$name"
}

exists() { [ -e "$1" ] || [ -L "$1" ]; }

# turn MANAGER: its turn, in a process that takes back what it began unless it succeeds.
turn() {
  manager=$1
  (
    trap interrupted HUP INT TERM
    trap finish EXIT
    case $manager in
      sfcb) "sfcb_$action" ;;
      *) "pegasus_$action" ;;
    esac
  ) &
  child=$!
  wait "$child" || status=1
  child=''
}

interrupted() {
  trap '' HUP INT TERM
  if [ -n "$child" ]; then
    # A program is the leader of a group, a turn is not.
    kill -- "-$child" 2>/dev/null || kill "$child" 2>/dev/null
    wait
  fi
  exit 130
}

finish() {
  code=$?
  trap '' HUP INT TERM
  if [ "$code" -ne 0 ]; then
    [ -z "$undo" ] || "$undo"
    [ -z "$work" ] || restore
  fi
  [ -z "$work" ] || rm -rf "$work"
}

# run COMMAND...: runs it so that an interruption ends it; what it writes comes into $work/output.
run() {
  setsid "$@" >"$work/output" 2>&1 </dev/null &
  child=$!
  wait "$child"
  code=$?
  child=''
  return $code
}

# refused WHAT: ends the turn with what the program wrote: its last line alone does not name class and line.
refused() {
  fail "$1:
$(sed "s|$work/\([^: ]*/\)*\(ZEB[A-Za-z]*\.mof\)|$data/\2|g; s/^[[:space:]]*/  /
    /^ *\$/d; /^  *[Ww]arning/d" "$work/output" | tail -n 6)"
}

# make_folder PATH, replace NEW PATH: make a folder; put NEW, or nothing, in the place of what is at PATH. Both are
# written down first, so that restore() knows what to do.
make_folder() {
  [ -d "$1" ] && return
  make_folder "$(dirname "$1")"
  echo "folder 0 $1" >>"$work/journal"
  mkdir "$1" || fail "cannot make $1"
}

replace() {
  steps=$((steps + 1))
  if exists "$2"; then
    echo "old $steps $2" >>"$work/journal"
    mv "$2" "$work/old.$steps" || fail "cannot replace $2"
  else
    make_folder "$(dirname "$2")"
    echo "new $steps $2" >>"$work/journal"
  fi
  [ -z "$1" ] || mv "$1" "$2" || fail "cannot write $2"
}

restore() {
  [ -e "$work/journal" ] || return 0
  tac "$work/journal" | while read -r kind step path; do
    case $kind in
      folder) rmdir "$path" ;;
      new) rm -rf "$path" ;;
      old) ! exists "$work/old.$step" || { rm -rf "$path" && mv "$work/old.$step" "$path"; } ;;
    esac
  done
}

# Object managers look for providers in folders of their own.
is_linked() {
  [ "$1" = "$(within "$(dirname "$plugin")")" ] || [ "$(readlink "$1/$library")" = "$plugin" ]
}
link_plugin() {
  ! is_linked "$1" || return 0
  ln -s "$plugin" "$work/$library" || fail "cannot write to $work"
  replace "$work/$library" "$1/$library"
}
unlink_plugin() {
  [ "$(readlink "$1/$library")" != "$plugin" ] || rm -f "$1/$library" || fail "cannot remove $1/$library"
}

# among_folders FOLDER...: in which the plug-in is found already, or the first that is there, or the first.
among_folders() {
  for fits in is_linked 'test -d' true; do
    for folder in "$@"; do
      folder=$(within "$folder")
      if $fits "$folder"; then echo "$folder"; return; fi
    done
  done
}

# Of the system that stands behind all the associations, which zebcim serves and others do not.
say_computer_system() {
  grep -q "^[[:space:]]*computer-system-path[[:space:]]*=[[:space:]]*[\"'][^\"']" "$(within /etc/qv-zeb/qv-zeb.toml)" 2>/dev/null ||
    say "nobody serves ZEB_ComputerSystem there, so associations with it lead nowhere;" \
      "computer-system-path in qv-zeb.toml names an instance that they lead to instead"
}
