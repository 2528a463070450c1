#include "SeenStore.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <string_view>
#include <system_error>

#include "Errno.h"
#include "StoreFile.h"
#include "cmpicpp/CmpiStatus.h"

namespace ZEB {
namespace {

namespace fs = std::filesystem;

void require(bool good, const fs::path& what) {
  if (!good) throwErrno(what);
}

/// The directory that is there, of those down to the store's.
fs::path existing(fs::path directory) {
  while (!fs::exists(directory) && directory.has_relative_path()) directory = directory.parent_path();
  return directory;
}

/// With room for as much as the journal of a change takes. The file has no name, and is gone at the end.
void requireRoom(const fs::path& directory) {
  const FileDescriptor file(open(directory.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, 0600));
  if (!file && (errno == EOPNOTSUPP || errno == EISDIR)) return;  // file systems that have no such files
  require(static_cast<bool>(file), directory);
  constexpr std::array<char, 16U << 10> kContent{};
  for (std::size_t written = 0; written < kContent.size();) {
    const ssize_t more = write(file.get(), kContent.data(), kContent.size() - written);
    require(more > 0, directory);
    written += static_cast<std::size_t>(more);
  }
}

/// As its header says; to open such a file makes others beside it.
bool keepsAnotherJournal(const std::string& file) {
  constexpr std::size_t kPlace = 18;
  std::array<char, kPlace + 1> header{};
  std::ifstream(file, std::ios::binary).read(header.data(), header.size());
  return std::string_view(header.data(), kPlace).starts_with("SQLite format 3") && header[kPlace] > 1;
}

}  // namespace

SeenStore::SeenStore(const std::string& file, const std::function<void(const std::string&)>& report) {
  try {
    const fs::path directory = existing(fs::path(file).parent_path());
    require(access(directory.c_str(), R_OK | W_OK | X_OK) == 0, directory);
    if (fs::exists(file)) {
      require(access(file.c_str(), R_OK | W_OK) == 0, file);
      read(file);
    }
    requireRoom(directory);
    report("");
  } catch (const std::exception& error) {
    report(error.what());
  }
}

void SeenStore::read(const std::string& file) {
  if (keepsAnotherJournal(file)) throw std::runtime_error("it keeps another kind of journal");
  try {
    SqliteDatabase database(file, kStorePatience, SqliteDatabase::Access::Reading);
    if (const auto content = readStore(database, file, {})) _values = content->values;
  } catch (const SqliteError& error) {
    // A change that was interrupted is taken back by the next who may write.
    if (!error.needsWriting()) throw;
  } catch (const DamagedStore& error) {
    throw std::runtime_error(std::string("it is damaged (") + error.what() +
                             "); it is put aside when it is opened, and a fresh one begins");
  }
}

void SeenStore::set(const std::string& key, std::uint32_t /*value*/) {
  throw CmpiCpp::CmpiStatus(CMPI_RC_ERR_FAILED, key + " is not kept: the store is only looked at");
}

}  // namespace ZEB
