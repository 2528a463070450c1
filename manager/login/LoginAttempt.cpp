#include "login/LoginAttempt.h"

namespace ZebManager {

LoginAttempt attemptOf(const Frame& frame) {
  std::vector<std::string> texts = unpackTexts(frame.body);
  if (frame.kind != Frame::Kind::Login || texts.size() != 3) throw FrameError("this is no login");
  return {std::move(texts[0]), std::move(texts[1]), std::move(texts[2])};
}

Frame frameOf(const LoginAttempt& attempt) {
  return {Frame::Kind::Login, 0, packTexts({attempt.user, attempt.password, attempt.host})};
}

Verdict verdictOf(const Frame& frame) {
  if (frame.kind != Frame::Kind::Verdict) throw FrameError("this is no verdict");
  return frame.number == 1 ? Verdict::MayRead : frame.number == 2 ? Verdict::MayWrite : Verdict::Refused;
}

Frame frameOf(Verdict verdict) {
  return {Frame::Kind::Verdict, static_cast<std::uint64_t>(verdict), {}};
}

}  // namespace ZebManager
