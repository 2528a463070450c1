# shellcheck shell=sh
# OpenPegasus: classes and instances that its running server takes in, one after the other, until it meets what it does
# not take. What it was given last is kept in a folder: that is what an upgrade that fails gives back.

pegasus_state=$(within /var/lib/qv-zeb/OpenPegasus)
pegasus_schema=$pegasus_state/ZEBEthernet.mof
pegasus_instances=$pegasus_state/ZEBEthernetProvider.mof

# Looked for where the caller says, where it was when the plug-in was registered, and where one runs.
pegasus_find() {
  told=$pegasus_home
  pegasus_home=${pegasus_home:-${PEGASUS_HOME:-}}
  pegasus_home=${pegasus_home:-$(cat "$pegasus_state/home" 2>/dev/null)}
  pegasus_home=${pegasus_home:-$(pegasus_running_home)}
  [ -z "$pegasus_home" ] || export PEGASUS_HOME="$pegasus_home"
  cimprovider=$(pegasus_program cimprovider)
  case $cimprovider in "$(within "$told")"/*) ;; *) [ -z "$told" ] || wrong "no cimprovider in '$told/bin'" ;; esac
}

pegasus_running_home() {
  for process in /proc/[0-9]*; do
    server=$(readlink "$process/exe" 2>/dev/null)
    case $server in
      "$root"/usr/bin/* | "$root"/usr/local/bin/*) ;;
      "$root"/*/bin/cimserver) echo "${server%/bin/cimserver}"; return ;;
    esac
  done
}

pegasus_program() { program "$1" ${pegasus_home:+"$pegasus_home/bin" "$pegasus_home/sbin"}; }

pegasus_begin() {
  work=$(mktemp -d) || fail "cannot make a temporary folder"
  public_schema=$(dirname "$data")/schema/cim.mof
  cimmof=$(pegasus_program cimmof)
  cimcli=$(pegasus_program cimcli)
  cimconfig=$(pegasus_program cimconfig)
}

# What the module's status is; empty when it is not registered. Fails when the server does not answer.
pegasus_ask_status() {
  run "$cimprovider" -l -s || return
  module_status=$(awk -v name="$module" '$1 == name { print $2 ? $2 : "Unknown" }' "$work/output")
}

# Where the server looks for providers; names without a slash in front are below its home.
pegasus_ask_provider_folder() {
  folders=$providers
  if [ -z "$folders" ] && [ -n "$cimconfig" ] && run "$cimconfig" -g providerDir -c; then
    folders=$(sed -n 's/^Current value:[[:space:]]*//p' "$work/output" | tr : ' ')
  fi
  set --
  for folder in ${folders:-$pegasus_usual_folders}; do
    case $folder in
      /*) set -- "$@" "$folder" ;;
      *) set -- "$@" "$pegasus_home/$folder" ;;
    esac
  done
  provider_folder=$(among_folders "$@")
}
pegasus_usual_folders="/usr/lib/Pegasus/providers /usr/lib64/Pegasus/providers /opt/tog-pegasus/providers/lib
  $(dirname "$(dirname "$plugin")")/Pegasus/providers"

# Where it keeps registrations: a choice of those who built it. Other namespaces may have the name, but not the class.
pegasus_ask_interop() {
  candidates=${interop:-root/PG_InterOp root/interop interop}
  for interop in $candidates; do
    ! run "$cimcli" gc PG_ProviderModule -n "$interop" || return 0
  done
  refused "no PG_ProviderModule in $candidates; --interop names the namespace that has it"
}

# What the namespace has, if there is one; the names of classes and qualifiers come one a line.
pegasus_list_classes() { run "$cimcli" nc -di -n "$namespace" && cp "$work/output" "$1"; }
pegasus_list_qualifiers() { run "$cimcli" eq -n "$namespace" && names_of Qualifier "$work/output" >"$1"; }
# names_of KIND FILE...: of what is declared, one a line.
names_of() {
  kind=$1
  shift
  sed -n "s/^[[:space:]]*$kind \([A-Za-z_0-9]*\).*/\1/p" "$@"
}

pegasus_note_namespace() {
  new_namespace=''
  if pegasus_list_classes "$work/classes"; then
    pegasus_list_qualifiers "$work/qualifiers" || refused "does not tell the qualifiers of $namespace"
  elif run "$cimcli" ns && ! grep -qix "[[:space:]]*$namespace[[:space:]]*" "$work/output"; then
    new_namespace=yes
    : >"$work/classes" >"$work/qualifiers"
  else
    refused "does not tell the classes of $namespace"
  fi
}

pegasus_compile() { run "$cimmof" "$@" || refused "the schema was refused"; }

pegasus_remove_module() {
  run "$cimprovider" -d -m "$module" # It may be disabled already.
  run "$cimprovider" -r -m "$module"
}
# What somebody stopped stays so.
pegasus_stop_again() { [ "$module_status" != Stopped ] || run "$cimprovider" -d -m "$module"; }

# A second registration is refused half way: what is there goes first.
pegasus_register_module() {
  step=removing
  [ -z "$module_status" ] || pegasus_remove_module || refused "the registration that it has was not removed"
  step=registering
  cp "$data/ZEBEthernetProvider.mof" "$work" || fail "cannot write to $work"
  run "$cimmof" -n "$interop" "$work/ZEBEthernetProvider.mof" || {
    # Some are built without the choice in whose name a provider works.
    grep -q UserContext "$work/output" && sed -i /UserContext/d "$work/ZEBEthernetProvider.mof" &&
      run "$cimmof" -n "$interop" "$work/ZEBEthernetProvider.mof" || refused "the registration was refused"
  }
  pegasus_stop_again
}

put_back() {
  run "$@" || echo "$self: $manager: what was there is not back: $(tail -n 1 "$work/output")" >&2
}

pegasus_undo() {
  [ "$step" != registering ] || pegasus_remove_module
  [ -z "$module_status" ] || [ "$step" = compiling ] || pegasus_put_module_back
  [ -z "$module_status" ] || put_back "$cimmof" -uc -n "$namespace" "$pegasus_schema"
  pegasus_list_classes "$work/now" || return
  for class in $(names_of class "$public_schema" "$data/ZEBEthernet.mof" | tac); do
    ! is_new "$class" "$work/classes" || put_back "$cimcli" dc "$class" -n "$namespace"
  done
  pegasus_list_qualifiers "$work/now" || return
  for qualifier in $(names_of Qualifier "$data/qualifiers.mof"); do
    ! is_new "$qualifier" "$work/qualifiers" || put_back "$cimcli" dq "$qualifier" -n "$namespace"
  done
  [ -z "$new_namespace" ] || put_back "$cimcli" di "__Namespace.Name=\"${namespace#*/}\"" -n "${namespace%%/*}"
}
pegasus_put_module_back() {
  if run "$cimprovider" -l -s && grep -q "^$module[[:space:]]" "$work/output"; then
    put_back "$cimprovider" -e -m "$module"
  else
    put_back "$cimmof" -n "$interop" "$pegasus_instances"
  fi
  pegasus_stop_again
}
is_new() { grep -qix "$1" "$work/now" && ! grep -qix "$1" "$2"; }

# What it was given: the files themselves, for an upgrade that fails, and sums of all that and of the plug-in.
sum_of() { cat "$@" | sha256sum; }
pegasus_given() {
  sum_of "$data/qualifiers.mof" "$public_schema" "$data/ZEBEthernet.mof" "$data/ZEBEthernetProvider.mof"
}
plugin_sum() { if [ -e "$(within "$plugin")" ]; then sum_of "$(within "$plugin")"; else sum_of "$plugin"; fi; }

pegasus_keep() {
  mkdir "$work/kept" && cp "$data/ZEBEthernet.mof" "$work/ZEBEthernetProvider.mof" "$work/kept" &&
    pegasus_given >"$work/kept/given" && plugin_sum >"$work/kept/library" &&
    echo "$provider_folder" >"$work/kept/folder" &&
    { [ -z "$pegasus_home" ] || echo "$pegasus_home" >"$work/kept/home"; } || fail "cannot write to $work"
  replace "$work/kept" "$pegasus_state"
}

pegasus_is_registered() {
  [ -n "$module_status" ] && is_linked "$provider_folder" &&
    [ "$(pegasus_given)" = "$(cat "$pegasus_state/given" 2>/dev/null)" ]
}

# A plug-in that is loaded stays so: after an upgrade the server lets go of it and takes the new one.
pegasus_refresh() {
  plugin_sum >"$work/library"
  if [ "$module_status" = Stopped ] || cmp -s "$work/library" "$pegasus_state/library"; then
    say "registered already"
    return
  fi
  undo=pegasus_enable
  run "$cimprovider" -d -m "$module" || refused "does not let go of the plug-in"
  run "$cimprovider" -e -m "$module" || refused "does not take the new plug-in"
  cp "$work/library" "$pegasus_state/library" || fail "cannot write to $pegasus_state"
  say "registered already; takes the new plug-in"
}
pegasus_enable() { put_back "$cimprovider" -e -m "$module"; }

pegasus_register() {
  pegasus_begin
  [ -n "$cimmof" ] && [ -n "$cimcli" ] || fail "has no cimmof or no cimcli"
  pegasus_ask_status || fail "does not answer; start it and call $self again"
  pegasus_ask_provider_folder
  if pegasus_is_registered; then pegasus_refresh; return; fi
  pegasus_ask_interop
  pegasus_note_namespace
  former=$(names_of class "$pegasus_schema" 2>/dev/null)
  step=compiling
  undo=pegasus_undo
  link_plugin "$provider_folder"
  # A call a file, as cimmof's status is that of the last. The public classes may be there already, with subclasses of
  # others: they are only added.
  pegasus_compile -n "$namespace" "$data/qualifiers.mof"
  pegasus_compile -n "$namespace" "$public_schema"
  pegasus_compile -uc -n "$namespace" "$data/ZEBEthernet.mof"
  pegasus_register_module
  pegasus_keep
  # What only the release before had.
  names_of class "$data/ZEBEthernet.mof" >"$work/now"
  pegasus_remove_classes "$(echo "$former" | grep -vxFf "$work/now")"
  say "registered"
  say_computer_system
}

# pegasus_remove_classes NAMES: subclasses before what they derive from. The public classes stay: others may use them.
pegasus_remove_classes() {
  kept=''
  for class in $(echo "$1" | tac); do
    run "$cimcli" dc "$class" -n "$namespace" || kept="$kept $class"
  done
  [ -z "$kept" ] || say "does not give up$kept in $namespace: $(tail -n 1 "$work/output")"
}

# The link goes first, whether the server answers or not.
pegasus_unregister() {
  pegasus_begin
  for folder in $pegasus_usual_folders $providers $(cat "$pegasus_state/folder" 2>/dev/null); do
    unlink_plugin "$(within "$folder")"
  done
  pegasus_ask_status || fail "does not answer. The plug-in is gone from where it looks for providers;" \
    "once it runs, this makes it forget the registration:
  $cimprovider -d -m $module
  $cimprovider -r -m $module"
  if [ -z "$module_status" ]; then
    rm -rf "$pegasus_state"
    say "was not registered"
    return
  fi
  pegasus_remove_module || refused "the module was not removed"
  [ -e "$pegasus_schema" ] || pegasus_schema=$data/ZEBEthernet.mof
  [ -z "$cimcli" ] || pegasus_remove_classes "$(names_of class "$pegasus_schema")"
  rm -rf "$pegasus_state"
  say "no longer registered"
}
