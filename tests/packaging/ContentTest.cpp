// What the packages put on a machine beside programs.
#include <gmock/gmock.h>

#include <filesystem>

#include "../manager/Process.h"
#include "posix/TemporaryFolder.h"

namespace ZebManager {
namespace {

class Content : public testing::Test {
 protected:
  void install(const std::string& component) const {
    const Outcome outcome = run(CMAKE_PROGRAM, {"--install", BUILD_FOLDER, "--component", component},
                                {"DESTDIR=" + folder.path().string()});
    ASSERT_EQ(outcome.status, 0) << outcome.err;
  }
  void expectFile(const std::string& name) const {
    const std::filesystem::path file = folder / name.substr(1);
    EXPECT_TRUE(std::filesystem::is_regular_file(file) && std::filesystem::file_size(file) > 0) << name;
  }

  const ZEB::TemporaryFolder folder;
};

TEST_F(Content, OfTheObjectManagerHasManualsAndCompletion) {
  install("zebcim");
  for (const char* name : {"/man/man1/zebcim.1.gz", "/man/man5/zebcim.toml.5.gz",
                           "/bash-completion/completions/zebcim", "/zsh/vendor-completions/_zebcim"})
    expectFile(DATA_ROOT + std::string(name));
}

TEST_F(Content, OfTheProviderHasManuals) {
  install("provider");
  for (const char* name : {"/man/man5/qv-zeb.toml.5.gz", "/man/man8/zeb-register.8.gz"})
    expectFile(DATA_ROOT + std::string(name));
}

}  // namespace
}  // namespace ZebManager
