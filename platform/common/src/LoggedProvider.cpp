#include "common/LoggedProvider.h"

#include "cmpicpp/CmpiStatus.h"

namespace ZEB {

void LoggedProvider::around(const char* operation, const CmpiCpp::CmpiObjectPath& subject,
                            const std::function<void()>& call) {
  // The text of a path is worth making only when somebody reads it.
  const bool wanted = logger().wants(LogLevel::Info);
  if (wanted) logger().info("%s(%s) begins", operation, subject.str());
  try {
    call();
  } catch (const CmpiCpp::CmpiStatus& status) {
    // A client that asks for what is not there has made no trouble.
    if (status.rc() == CMPI_RC_ERR_NOT_FOUND || status.rc() == CMPI_RC_ERR_NOT_SUPPORTED) {
      if (wanted) logger().info("%s(%s) ends: %s", operation, subject.str(), status.what());
    } else {
      logger().warn("%s(%s) failed: %s", operation, subject.str(), status.what());
    }
    throw;
  } catch (const std::exception& error) {
    logger().warn("%s(%s) failed: %s", operation, subject.str(), error.what());
    throw;
  }
  if (wanted) logger().info("%s(%s) ends", operation, subject.str());
}

}  // namespace ZEB
