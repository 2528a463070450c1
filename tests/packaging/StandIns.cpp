#include "packaging/StandIns.h"

#include <set>

namespace ZebManager {

void storeInSfcb(const FakeRoot& root, const std::string& space, const std::string& className,
                 const std::string& key, const std::string& content) {
  const std::string file = "/var/lib/sfcb/registration/repository/" + space + "/" + className;
  const std::string offset = std::to_string(root.has(file) ? root.read(file).size() : 0);
  root.append(file, content);
  // Lengths of the record and of the key, the key, length and place of the instance.
  std::string record = "    " + std::to_string(key.size()) + " " + key + " " +
                       std::to_string(content.size()) + " " + offset + "\r\n";
  const std::string length = std::to_string(record.size());
  root.append(file + ".idx", record.replace(0, length.size(), length));
}

void addSfcb(const FakeRoot& root, const std::string& prefix, const std::string& providerDirs) {
  const std::string programs = prefix.empty() ? "/usr" : prefix;
  // A root may itself be the folder that sfcb was built for.
  const bool rooted = prefix == root.path("");
  const std::string home = rooted ? "" : prefix;
  const std::string schemas = programs + "/share/sfcb/CIM";
  root.addProgram((rooted ? "" : programs) + "/bin/sfcbrepos",
                  "prefix='" + prefix + "' schemas='" + schemas + "'\n", {"habits.sh", "sfcbrepos"});
  root.write((rooted ? "" : programs) + "/share/sfcb/CIM/CIM_Schema.mof", "// the public classes\n");
  const std::string state = home + "/var/lib/sfcb";
  root.write(home + "/etc/sfcb/sfcb.cfg",
             "httpPort: 5988\n#registrationDir: /tmp\nregistrationDir: " + prefix +
                 "/var/lib/sfcb/registration\n" +
                 (providerDirs.empty() ? "" : "providerDirs: " + providerDirs + "\n"));
  const std::string own = "[CIM_Namespace]\n   provider: ServerProvider\n   location: sfcInterop\n#\n";
  const std::string site = "[Site_Thing]\n   provider: Site\n   location: SiteProvider\n";
  root.write(state + "/stage/default.reg", own);
  root.write(state + "/stage/regs/site.reg", site);
  root.write(state + "/registration/providerRegister", own + site);
  root.write(state + "/registration/providerRegister.previous", own);
  for (const std::string space : {"root/interop", "root/cimv2", "root/site"}) {
    const std::string classes = "class Of_" + space.substr(5) + " {\n};\n";
    root.write(state + "/stage/mofs/" + space + "/classes.mof", classes);
    root.write(state + "/registration/repository/" + space + "/classSchemas", classes);
  }
  root.write(state + "/registration/repository.previous/root/cimv2/classSchemas", "of long ago");
}

void addPegasus(const FakeRoot& root, const std::string& interop, const std::string& programs) {
  for (const std::string program : {"cimmof", "cimprovider", "cimcli"}) {
    root.addProgram(programs + "/" + program, "", {"habits.sh", "server.sh", program});
  }
  root.addProgram(programs + "/cimconfig", "", {"habits.sh", "server.sh", "cimconfig"});
  root.write("/usr/lib/Pegasus/providers/libSite.so", "");
  for (std::string space :
       std::set<std::string>{"root", "root/cimv2", "root/interop", "root/PG_InterOp", "interop", interop}) {
    const bool registrations = space == interop;
    if (const size_t slash = space.find('/'); slash != std::string::npos) space[slash] = '#';
    const std::string folder = "/srv/repository/" + space;
    root.write(folder + "/qualifiers/Key", "Qualifier Key : boolean = false;\n");
    root.write(folder + "/classes/CIM_ManagedElement", "class CIM_ManagedElement {\n};\n");
    root.write(folder + "/instances/site", "of the site\n");
    if (!registrations) continue;
    root.write(folder + "/classes/PG_ProviderModule", "class PG_ProviderModule {\n};\n");
    root.write(folder + "/instances/module.SiteModule", "instance of PG_ProviderModule {\n};\n");
  }
}

void upgrade(const FakeRoot& root) {
  root.append(PROVIDER_FOLDER + kLibrary, ", improved");
  root.append(kRegistration + "/ZEBEthernet.mof",
              "\n[Description(\"New\")]\nclass ZEB_New : CIM_ManagedElement {\n};\n");
  root.append(kRegistration + "/ZEBEthernet.reg",
              "[ZEB_New]\n   provider: ZEBEthernetPort\n   location: ZEBEthernetPortProvider\n"
              "   type: instance\n   namespace: root/jxv\n   group: ZEBEthernetPort\n   unload: never\n\n");
  root.append(kRegistration + "/ZEBEthernetProvider.mof",
              "\ninstance of PG_ProviderCapabilities {\n  ProviderModuleName = "
              "\"ZEBEthernetPortProvider\";\n  ProviderName = \"ZEBEthernetPort\";\n"
              "  CapabilityID = \"ZEB_New\";\n  ClassName = \"ZEB_New\";\n"
              "  Namespaces = {\"root/jxv\"};\n  ProviderType = {2};\n};\n");
}

}  // namespace ZebManager
