// Somebody else who works on stores: a program, as a test whose process has threads cannot safely go on in a
// child. A step of SQL may also be ":say", which writes a line, ":wait" or ":wait MILLISECONDS".
//
//     zeb_store_client sql FILE STEP...
//     zeb_store_client set STORE KEY FIRST LAST
//
// The second gives a key these values, one after the other.
#include <sqlite3.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <string>
#include <thread>

#include "common/DataStore.h"

namespace {

constexpr int kNotOpened = 97;
constexpr unsigned kLongestSeconds = 600;  // should the test have gone before this asked to go with it
constexpr char kWait[] = ":wait ";

bool perform(sqlite3* database, const std::string& step) {
  if (step == ":say") return std::puts("done") >= 0 && std::fflush(stdout) == 0;
  if (step == ":wait") return pause() == 0;
  if (step.starts_with(kWait)) {
    std::this_thread::sleep_for(std::chrono::milliseconds(std::stol(step.substr(sizeof kWait - 1))));
    return true;
  }
  return sqlite3_exec(database, step.c_str(), nullptr, nullptr, nullptr) == SQLITE_OK;
}

int sql(const char* file, char** step) {
  sqlite3* database = nullptr;
  if (sqlite3_open(file, &database) != SQLITE_OK) return kNotOpened;
  sqlite3_busy_timeout(database, 5000);
  bool good = true;
  for (; good && *step; ++step) good = perform(database, *step);
  // A transaction that is open goes with the process, as with one that is killed.
  _exit(good ? 0 : 1);
}

int set(const char* store, const std::string& key, std::uint32_t first, std::uint32_t last) {
  const auto own = ZEB::makeDataStore(store);
  for (std::uint32_t value = first; value <= last; ++value) own->setUInt32(key, value);
  return 0;
}

}  // namespace

int main(int count, char** words) {
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  alarm(kLongestSeconds);
  const std::string verb = count > 1 ? words[1] : "";
  if (verb == "sql" && count > 3) return sql(words[2], words + 3);
  if (verb == "set" && count == 6) {
    return set(words[2], words[3], static_cast<std::uint32_t>(std::stoul(words[4])),
               static_cast<std::uint32_t>(std::stoul(words[5])));
  }
  return 2;
}
