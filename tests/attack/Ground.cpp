#include "Ground.h"

#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "support/Content.h"
#include "support/NetworkNamespace.h"

namespace ZebManager {
namespace {

using ZEB::test::contentOf;

constexpr char kHash[] = "$5$rounds=1000$attack$DvrVeal5qp1gTrbXFymvi.916b2L7kXs.7raR29.1F6";  // of "secret"

struct UserRow {
  const char* name;
  unsigned id;
  std::string shadow;  ///< behind the name
};

/// Days since 1970: the password was changed on day 20000, a long time ago or (for the one that is aged)
/// never; the account ended on day 1.
const std::array<UserRow, 6> kUsers = {
    UserRow{"writer", 64002, std::string(kHash) + ":20000:0:99999:7:::"},
    UserRow{"reader", 64003, std::string(kHash) + ":20000:0:99999:7:::"},
    UserRow{"expired", 64004, std::string(kHash) + ":20000:0:99999:7::1:"},
    UserRow{"aged", 64005, std::string(kHash) + ":0:0:99999:7:::"},
    UserRow{"locked", 64006, "!" + std::string(kHash) + ":20000:0:99999:7:::"},
    UserRow{"blank", 64007, ":20000:0:99999:7:::"},
};

/// Puts another content in the place of a file, for this namespace alone.
void cover(const std::string& folder, const std::string& file, const std::string& content) {
  struct stat original {};
  if (stat(file.c_str(), &original) != 0) throw std::runtime_error(file);
  const std::string own = folder + "/" + std::filesystem::path(file).filename().string();
  std::ofstream(own) << content;
  if (chown(own.c_str(), original.st_uid, original.st_gid) != 0 ||
      chmod(own.c_str(), original.st_mode) != 0 ||
      mount(own.c_str(), file.c_str(), nullptr, MS_BIND, nullptr) != 0) {
    throw std::runtime_error("cover " + file);
  }
}

void makeUsers(const std::string& folder) {
  std::string passwd = contentOf("/etc/passwd") + "zebserver:x:64001:64001::/:/bin/false\n";
  std::string shadow = contentOf("/etc/shadow");
  std::string members = "writer";
  for (const UserRow& user : kUsers) {
    const std::string id = std::to_string(user.id);
    passwd += std::string(user.name) + ":x:" + id + ":" + id + "::/:/bin/false\n";
    shadow += std::string(user.name) + ":" + user.shadow + "\n";
  }
  cover(folder, "/etc/passwd", passwd);
  cover(folder, "/etc/shadow", shadow);
  cover(folder, "/etc/group", contentOf("/etc/group") + "zebcim:x:64000:writer\n");
}

bool enter() {
  if (geteuid() != 0 || unshare(CLONE_NEWNS | CLONE_NEWNET) != 0) return false;
  if (mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0) return false;
  if (mount("tmpfs", "/run", "tmpfs", 0, "mode=755") != 0) return false;
  std::filesystem::create_directories("/run/ground");
  std::filesystem::create_directories("/run/faillock");
  makeUsers("/run/ground");
  return ZEB::test::setLoopback(true) &&
         std::system(
             "ip link add here type veth peer name there && ip address add 192.0.2.1/24 dev here && "
             "ip link set here up && ip link set there up") == 0;
}

/// Before any thread is there.
class Ground : public testing::Environment {
 public:
  void SetUp() override { _own = enter(); }
  static bool isOwn() { return _own; }

 private:
  static inline bool _own = false;
};

[[maybe_unused]] const testing::Environment* const ground = testing::AddGlobalTestEnvironment(new Ground);

}  // namespace

bool groundIsOwn() {
  return Ground::isOwn();
}

}  // namespace ZebManager
