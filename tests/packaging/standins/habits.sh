# What every stand-in begins with; $root is the root folder that it stands in, $notes a folder outside of it. It
# writes down how it was called, and fails in the ways that the file `habits` asks for, a line each:
# "refuses ZEB_EthernetPort".
echo "${0##*/} $*" >>"$notes/record"

# habit NAME: whether it has the habit; $with is what the line says beside its name.
habit() {
  while read -r name with; do
    [ "$name" != "$1" ] || return 0
  done <"$notes/habits"
  return 1
}

complain() { echo "$*" >&2; }

# At this point the one that called it is told to end, once, by the signal that the habit names, while it goes on.
may_be_interrupted() {
  habit interrupted && [ ! -e "$notes/waiting" ] || return 0
  echo $$ >"$notes/waiting"
  # The caller's parent: object managers have their turns in processes of their own.
  kill "-$with" "$(sed 's/.*) . \([0-9]*\) .*/\1/' "/proc/$PPID/stat")"
  sleep 50
}
