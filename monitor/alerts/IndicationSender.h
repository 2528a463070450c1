#pragma once

#include <string>

#include "monitor/alerts/ZEB_EthernetIndication.h"

namespace ZEB {

/// A sender whose making is announced in the log, as on every occasion that there is to send something.
class IndicationSender : public ZEB_EthernetIndication {
 public:
  IndicationSender(const Logger& logger, const std::string& nameSpace)
      : ZEB_EthernetIndication(announced(logger), nameSpace) {
    logger.info("Done creating EthernetIndication object");
  }

 private:
  static const Logger& announced(const Logger& logger) {
    logger.info("Creating EthernetIndication object");
    return logger;
  }
};

}  // namespace ZEB
