#include "GuestServer.h"

#include <fstream>
#include <iterator>
#include <pugixml.hpp>
#include <regex>

#include "GuestError.h"

namespace ZEB::guest {
namespace {

constexpr std::string_view kConfigure = R"sh(set -e
rm -rf /tmp/serve
mkdir -p /tmp/serve/pam /tmp/serve/store
cd /tmp/serve
printf '#!/bin/sh\n[ "$(tr -d "\\0")" = secret ]\n' >password
chmod 700 password
echo 'auth required pam_exec.so quiet expose_authtok /tmp/serve/password' >pam/zebcim
echo 'account required pam_permit.so' >>pam/zebcim
cat >zebcim.toml <<END
[access]
pam-folder = "/tmp/serve/pam"
write-group = "root"
[state]
directory = "/tmp/serve/state"
END
)sh";

/// "//guest/root/jxv:Class.Key="value",…" as an element; none of the guest's values needs escaping.
std::string elementOf(const std::string& path) {
  const std::size_t colon = path.find(':'), dot = path.find('.', colon);
  std::string element = "<INSTANCENAME CLASSNAME=\"" + path.substr(colon + 1, dot - colon - 1) + "\">";
  static const std::regex key("([A-Za-z]+)=\"([^\"]*)\"");
  for (std::sregex_iterator next(path.begin() + static_cast<std::ptrdiff_t>(dot), path.end(), key), end;
       next != end; ++next) {
    element += "<KEYBINDING NAME=\"" + next->str(1) + "\"><KEYVALUE VALUETYPE=\"string\">" + next->str(2) +
               "</KEYVALUE></KEYBINDING>";
  }
  return element + "</INSTANCENAME>";
}

std::string pathOf(const pugi::xml_node& instance) {
  const pugi::xml_node space = instance.child("NAMESPACEPATH");
  std::string path = std::string("//") + space.child("HOST").text().get(), separator = ".";
  for (const pugi::xml_node& part : space.child("LOCALNAMESPACEPATH").children())
    path += std::string("/") + part.attribute("NAME").value();
  path += std::string(":") + instance.child("INSTANCENAME").attribute("CLASSNAME").value();
  for (const pugi::xml_node& key : instance.child("INSTANCENAME").children()) {
    path += separator + key.attribute("NAME").value() + "=\"" + key.child("KEYVALUE").text().get() + "\"";
    separator = ",";
  }
  return path;
}

std::string request(const std::string& path, bool last) {
  const std::string body =
      "<?xml version=\"1.0\" encoding=\"utf-8\"?><CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\"><MESSAGE "
      "ID=\"1\" "
      "PROTOCOLVERSION=\"1.0\"><SIMPLEREQ><IMETHODCALL NAME=\"AssociatorNames\"><LOCALNAMESPACEPATH>"
      "<NAMESPACE NAME=\"root\"/><NAMESPACE NAME=\"jxv\"/></LOCALNAMESPACEPATH>"
      "<IPARAMVALUE NAME=\"ObjectName\">" +
      elementOf(path) + "</IPARAMVALUE></IMETHODCALL></SIMPLEREQ></MESSAGE></CIM>";
  return "POST /cimom HTTP/1.1\r\nHost: localhost\r\nContent-Type: application/xml; charset=\"utf-8\"\r\n"
         "CIMOperation: MethodCall\r\nCIMMethod: AssociatorNames\r\nCIMObject: root/jxv\r\nConnection: " +
         std::string(last ? "close" : "keep-alive") + "\r\nContent-Length: " + std::to_string(body.size()) +
         "\r\n\r\n" + body;
}

std::vector<std::string> pathsIn(const std::string& answer) {
  pugi::xml_document document;
  document.load_string(answer.c_str());
  const pugi::xml_node response =
      document.child("CIM").child("MESSAGE").child("SIMPLERSP").child("IMETHODRESPONSE");
  if (!response || response.child("ERROR")) throw GuestError("no paths but " + answer);
  std::vector<std::string> paths;
  for (const pugi::xml_node& object : response.child("IRETURNVALUE").children("OBJECTPATH"))
    paths.push_back(pathOf(object.child("INSTANCEPATH")));
  return paths;
}

}  // namespace

GuestServer::GuestServer(Guest& guest, const std::string& settings) : guest_(guest) {
  guest_.must(std::string(kConfigure) + "cat >>zebcim.toml <<'END'\n" + settings + "\nEND\n");
  start();
}

GuestServer::~GuestServer() {
  try {
    stop();
  } catch (const GuestError&) {
    // It goes with the guest.
  }
}

void GuestServer::restart() {
  stop();
  start();
}

void GuestServer::start() {
  guest_.must(std::string("cd /tmp/serve\n>said\nZEB_STORE_DIR=/tmp/serve/store setsid " ZEBCIM
                          " serve --config /tmp/serve/zebcim.toml --https none --http ") +
              kAddress + " </dev/null >said 2>>log &\necho $! >/tmp/serve/pid");
  if (!guest_.await("grep -q ^http /tmp/serve/said", std::chrono::seconds(60)))
    throw GuestError("nothing is served: " + guest_.run("cat /tmp/serve/log").output);
}

void GuestServer::stop() {
  guest_.run("read -r pid </tmp/serve/pid; kill $pid; while [ -e /proc/$pid/exe ]; do sleep 0.02; done");
}

std::map<std::string, std::vector<std::string>> GuestServer::associatorNames(
    const std::vector<std::string>& paths) {
  std::string requests;
  for (const std::string& path : paths) requests += request(path, &path == &paths.back());
  std::ofstream(guest_.results() / "requests", std::ios::binary) << requests;
  const std::string answers = guest_.must(
      "exec 3<>/dev/tcp/127.0.0.1/5988\ncat /results/requests >&3\ncat <&3", std::chrono::seconds(60));
  std::map<std::string, std::vector<std::string>> found;
  std::size_t at = 0;
  for (const std::string& path : paths) {
    const std::size_t begin = answers.find("<CIM ", at), end = answers.find("</CIM>", begin);
    if (end == std::string::npos) throw GuestError("an answer is missing: " + answers.substr(at));
    at = end + 6;
    found[path] = pathsIn(answers.substr(begin, at - begin));
  }
  return found;
}

}  // namespace ZEB::guest
