# Makes the registrations of the plug-in from the MOF of its classes.
#   awk -v kind=stanzas   -f registration.awk FILE.mof…    a stanza a class, for sfcb
#   awk -v kind=instances -f registration.awk FILE.mof…    PG_ instances, for OpenPegasus
# Relies on the layout of the files: a class's qualifiers begin a line, and so does `class`; members are indented.

BEGIN {
  module = "ZEBEthernetPortProvider"
  provider = "ZEBEthernetPort"
  namespace = "root/jxv"
  elsewhere["ZEB_ComputerSystem"]
  if (kind == "instances") print_module()
}

/^\[/ {
  association = /^\[Association/
  indication = /^\[Indication/
  abstract = /^\[Abstract/
}

/^class / {
  name = $2
  methods = 0
}

/^  [^"]* [A-Za-z]+\(.*\);/ { methods = 1 }

/^};/ {
  if (!abstract && !(name in elsewhere)) {
    if (kind == "stanzas") print_stanza()
    else print_capabilities()
  }
  association = indication = abstract = 0
}

# What the class is served as, in words or in the numbers of ProviderType.
function types(instance_word, association_word, indication_word, method_word, separator,    list) {
  if (indication) return indication_word
  list = instance_word
  if (association) list = list separator association_word
  if (methods) list = list separator method_word
  return list
}

function print_stanza() {
  print "[" name "]"
  print "   provider: " provider
  print "   location: " module
  print "   type: " types("instance", "association", "indication", "method", " ")
  print "   namespace: " namespace
  print "   group: " provider
  print "   unload: never"
  print ""
}

# UserContext 4: with the rights of the object manager, whoever asks. One set of stores, one process.
function print_module() {
  print "instance of PG_ProviderModule {"
  print "  Name = \"" module "\";"
  print "  Vendor = \"qv-zeb\";"
  print "  Version = \"" version "\";"
  print "  InterfaceType = \"CMPI\";"
  print "  InterfaceVersion = \"2.0.0\";"
  print "  Location = \"" module "\";"
  print "  UserContext = 4;"
  print "};"
  print ""
  print "instance of PG_Provider {"
  print "  ProviderModuleName = \"" module "\";"
  print "  Name = \"" provider "\";"
  print "};"
}

function print_capabilities() {
  print ""
  print "instance of PG_ProviderCapabilities {"
  print "  ProviderModuleName = \"" module "\";"
  print "  ProviderName = \"" provider "\";"
  print "  CapabilityID = \"" name "\";"
  print "  ClassName = \"" name "\";"
  print "  Namespaces = {\"" namespace "\"};"
  print "  ProviderType = {" types(2, 3, 4, 5, ", ") "};"
  print "};"
}
