# shellcheck shell=sh
# sfcb: a stage of files, from which sfcbrepos makes a repository and a list of providers. It makes all of it anew,
# loses what is stored in namespaces that nobody staged, and stops half way at what it can neither migrate nor compile.
# So it gets a stage with the plug-in's namespace alone and works in a folder of its own, and only what it made whole is
# put in place. The rest of the repository is not touched.

sfcb_find() { sfcbrepos=$(program sfcbrepos); }

# sfcb_default OPTION ELSE: the folder that sfcbrepos takes without the option, as its help says.
sfcb_default() {
  folder=$(echo "$sfcb_help" | sed -n "s/^[[:space:]]*-$1[[:space:]].*\[\(.*\)\].*/\1/p")
  within "${folder:-$2}"
}

sfcb_setting() { sed -n "s/^[[:space:]]*$1:[[:space:]]*//p" "$configuration" 2>/dev/null | tail -n 1; }

sfcb_locate() {
  sfcb_help=$("$sfcbrepos" -h 2>&1)
  stage=$(sfcb_default s /var/lib/sfcb/stage)
  schemas=$(sfcb_default c /usr/share/sfcb/CIM)
  installed=$(dirname "$(dirname "$sfcbrepos")")
  for prefix in "${stage%/var/lib/sfcb/stage}" "$installed" "$root"; do
    configuration=$prefix/etc/sfcb/sfcb.cfg
    [ ! -e "$configuration" ] || break
  done
  registration=$(sfcb_setting registrationDir)
  registration=${registration:-$(sfcb_default r /var/lib/sfcb/registration)}
  registration=$(within "$registration")
  place=$registration/repository/$namespace
  register=$registration/providerRegister
  staged_schema=$stage/mofs/$namespace/ZEBEthernet.mof
  staged_classes=$stage/regs/ZEBEthernet.reg
  provider_folders=$(sfcb_setting providerDirs)
  provider_folders=${provider_folders:-$installed/lib/sfcb $installed/lib64/sfcb $installed/lib/cmpi}
  # shellcheck disable=SC2086 # A folder a word.
  provider_folder=$(among_folders $provider_folders)
}

# sfcb_stanzas ours|others: that part of the list of providers.
sfcb_stanzas() {
  awk -v want="$1" -v ours="^[[:space:]]*location:[[:space:]]*${module}[[:space:]]*\$" '
    function flush() { if (found == (want == "ours")) printf "%s", stanza; stanza = ""; found = 0 }
    /^[^[:space:]]/ { flush() }
    $0 ~ ours { found = 1 }
    { stanza = stanza $0 "\n" }
    END { flush() }' "$register"
}

sfcb_is_registered() {
  cmp -s "$data/ZEBEthernet.mof" "$staged_schema" && cmp -s "$data/ZEBEthernet.reg" "$staged_classes" &&
    [ -s "$place/classSchemas" ] && [ -z "$(find "$staged_schema" -newer "$place/classSchemas")" ] &&
    [ -e "$register" ] && sfcb_stanzas ours | cmp -s - "$data/ZEBEthernet.reg" &&
    is_linked "$provider_folder"
}

# sfcb_instances FOLDER: what is stored in a namespace, class and key a line.
sfcb_instances() {
  for index in "$1"/*.idx; do
    class=$(basename "$index" .idx)
    case $class in '*' | qualifiers) continue ;; esac
    # Length of the record, of the key, the key, length and place of the instance.
    sed "s/^ *[0-9]* *[0-9]* \(.*\) [0-9]* [0-9]*[[:space:]]*\$/\1/; s/^/  $class /" "$index"
  done | sort
}

# A folder of its own beside the repository. What an earlier run that was killed left there is put back.
sfcb_begin() {
  for work in "$registration"/.zeb-register.*; do
    [ ! -d "$work" ] || { restore; rm -rf "$work"; }
  done
  work=''
  work=$(mktemp -d "$registration/.zeb-register.XXXXXX") || fail "cannot write to $registration"
}

copy_folder() { [ ! -d "$1" ] || { mkdir -p "$2" && cp -pR "$1/." "$2"; }; }

# sfcb_build [FOLDER]: makes the plug-in's namespace, which is to replace $target, from all that is staged for it, with
# the plug-in's own files from FOLDER or with none. Where there is no repository yet, it makes the whole.
sfcb_build() {
  part=/$namespace
  [ -d "$registration/repository" ] || part=''
  target=$registration/repository$part made=$work/registration/repository$part
  mkdir -p "$work/registration" "$work/stage/mofs/$namespace" "$work/stage/regs" &&
    cp "$stage/default.reg" "$work/stage" &&
    find "$stage/mofs" -maxdepth 1 -name '*.mof' -exec cp {} "$work/stage/mofs" \; &&
    copy_folder "$stage/regs" "$work/stage/regs" &&
    copy_folder "$stage/mofs$part" "$work/stage/mofs$part" &&
    copy_folder "$target" "$made" || fail "cannot copy $stage to $work"
  if [ $# -gt 0 ]; then
    cp "$1/ZEBEthernet.mof" "$work/stage/mofs/$namespace" && cp "$1/ZEBEthernet.reg" "$work/stage/regs" ||
      fail "cannot copy $1 to $work"
  fi
  sfcb_instances "$target" >"$work/had"
  sfcb_make || { [ -n "$force" ] && sfcb_make -i; } || {
    [ ! -s "$work/had" ] || blame="$blame; --force leaves out what is stored in $namespace"
    refused "$blame"
  }
  [ -s "$work/registration/repository/$namespace/classSchemas" ] || refused "sfcbrepos made no classes"
  sfcb_instances "$made" | comm -23 "$work/had" - >"$work/lost"
  [ ! -s "$work/lost" ] || [ -n "$force" ] ||
    fail "$blame without losing what is stored in $namespace, which takes --force:
$(cat "$work/lost")"
}
sfcb_make() { run "$sfcbrepos" -f "$@" -s "$work/stage" -r "$work/registration" -c "$schemas"; }

sfcb_register() {
  sfcb_locate
  if sfcb_is_registered; then
    say "registered already; restart it when the plug-in is new"
    return
  fi
  [ -e "$stage/default.reg" ] || fail "has no stage in $stage"
  sfcb_begin
  blame="its repository could not be made"
  sfcb_build "$data"
  if [ -e "$register" ]; then
    cp -p "$register" "$work/register" && { sfcb_stanzas others; cat "$data/ZEBEthernet.reg"; } >"$work/register"
  else
    mv "$work/registration/providerRegister" "$work/register"
  fi || fail "cannot write to $work"
  chown -R --reference="$registration" "$made" 2>/dev/null
  replace "$made" "$target"
  replace "$work/register" "$register"
  replace "$work/stage/mofs/$namespace/ZEBEthernet.mof" "$staged_schema"
  replace "$work/stage/regs/ZEBEthernet.reg" "$staged_classes"
  link_plugin "$provider_folder"
  sfcb_is_registered || fail "did not take the plug-in"
  say "registered; restart it"
  say_computer_system
}

# Files and link go first, and stay away.
sfcb_unregister() {
  sfcb_locate
  for folder in $provider_folders; do unlink_plugin "$(within "$folder")"; done
  if ! [ -e "$staged_schema" ] && ! [ -e "$staged_classes" ] && ! grep -qs "location: $module" "$register"; then
    say "was not registered"
    return
  fi
  rm -f "$staged_schema" "$staged_classes" || fail "cannot remove files from $stage"
  rmdir "$stage/mofs/$namespace" 2>/dev/null
  sfcb_begin
  if [ -e "$register" ]; then
    cp -p "$register" "$work/register" && sfcb_stanzas others >"$work/register" &&
      mv "$work/register" "$register" || fail "cannot write $register"
  fi
  blame="its classes are still there, and '$sfcbrepos -f' cannot make its repository"
  if [ -n "$(find "$stage/mofs/$namespace" -name '*.mof' 2>/dev/null)" ]; then
    sfcb_build
    replace "$made" "$target"
  elif [ -z "$force" ] && [ -n "$(sfcb_instances "$place")" ]; then
    say "$place has instances that were stored there; it stays, and can be removed"
  else
    ! exists "$place" || replace "" "$place"
  fi
  say "no longer registered; restart it"
}
