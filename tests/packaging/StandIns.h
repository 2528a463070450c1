// Object managers in a root folder, as a site has them: with classes, stored instances and providers of
// others.
#pragma once

#include "packaging/FakeRoot.h"

namespace ZebManager {

inline const std::string kSfcbState = "/var/lib/sfcb";
inline const std::string kSfcbRegistration = kSfcbState + "/registration";
inline const std::string kSfcbRegister = kSfcbRegistration + "/providerRegister";
inline const std::string kSfcbSpace = kSfcbRegistration + "/repository/root/jxv";

inline const std::string kPegasusProviders = "/usr/lib/Pegasus/providers";
inline const std::string kPegasusState = "/var/lib/qv-zeb/OpenPegasus";
inline const std::string kPegasusAsk = "cimprovider -l -s";

/// Where a namespace of OpenPegasus, by the name of its folder, keeps the registration.
inline std::string pegasusModule(const std::string& space) {
  return "/srv/repository/" + space + "/instances/module.ZEBEthernetPortProvider";
}

/// sfcb built for folders below `prefix` ("" for a distribution's), with the folders in which it looks for
/// providers.
void addSfcb(const FakeRoot& root, const std::string& prefix = "", const std::string& providerDirs = "");
/// An instance that somebody stored in sfcb.
void storeInSfcb(const FakeRoot& root, const std::string& space, const std::string& className,
                 const std::string& key, const std::string& content);

/// OpenPegasus with its registrations in the namespace `interop`, and programs in a folder `programs`.
void addPegasus(const FakeRoot& root, const std::string& interop = "root/PG_InterOp",
                const std::string& programs = "/usr/bin");

/// The library and the files that zeb-register gives to object managers, as a later release has them: with a
/// class more.
void upgrade(const FakeRoot& root);

}  // namespace ZebManager
