#include "Attack.h"

#include <stdexcept>
#include <thread>

namespace ZebManager {
namespace {

std::string base64Of(const std::string& text) {
  constexpr char kDigits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string coded;
  for (std::size_t at = 0; at < text.size(); at += 3) {
    unsigned bits = 0;
    for (std::size_t i = 0; i < 3; ++i) {
      bits = bits << 8 | (at + i < text.size() ? static_cast<unsigned char>(text[at + i]) : 0U);
    }
    for (int shift = 18; shift >= 0; shift -= 6) coded += kDigits[bits >> shift & 63U];
  }
  for (std::size_t over = text.size() % 3; over != 0 && over < 3; ++over) {
    coded[coded.size() - (3 - over)] = '=';
  }
  return coded;
}

constexpr char kClose[] = "Connection: close\r\n";

}  // namespace

std::string credentials(const std::string& user, const std::string& password) {
  return "Authorization: Basic " + base64Of(user + ":" + password) + "\r\n";
}

std::string namesOfClasses(const std::string& moreHeaders) {
  return post(call("EnumerateClassNames", ""), "EnumerateClassNames", "root/jxv", moreHeaders + kClose);
}

std::string instancesOf(const std::string& className, const std::string& moreHeaders) {
  return post(call("EnumerateInstances",
                   "<IPARAMVALUE NAME=\"ClassName\"><CLASSNAME NAME=\"" + className + "\"/></IPARAMVALUE>"),
              "EnumerateInstances", "root/jxv", moreHeaders + kClose);
}

std::string ask(const std::string& address, const std::string& request, double seconds) {
  try {
    return ZebManager::exchange(address, request, seconds);
  } catch (const std::runtime_error&) {
    return {};
  }
}

int statusOf(const std::string& answer) {
  return answer.starts_with("HTTP/1.1 ") ? std::stoi(answer.substr(9, 3)) : 0;
}

void together(int threads, const std::function<void(int)>& work) {
  std::vector<std::thread> running;
  for (int i = 0; i < threads; ++i) running.emplace_back(work, i);
  for (std::thread& thread : running) thread.join();
}

}  // namespace ZebManager
