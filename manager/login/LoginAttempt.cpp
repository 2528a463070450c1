#include "login/LoginAttempt.h"

namespace ZebManager {

LoginAttempt attemptOf(const Frame& frame) {
  std::vector<std::string> texts = unpackTexts(frame.body);
  if (frame.kind != Frame::Kind::Login || texts.size() < 2 || texts.size() > 3)
    throw FrameError("this is no login");
  LoginAttempt attempt{std::move(texts[0]), std::nullopt, std::move(texts[1])};
  if (texts.size() == 3) attempt.password = std::move(texts[2]);
  return attempt;
}

Frame frameOf(const LoginAttempt& attempt) {
  std::vector<std::string> texts = {attempt.user, attempt.host};
  if (attempt.password) texts.push_back(*attempt.password);
  return {Frame::Kind::Login, 0, packTexts(texts)};
}

Verdict verdictOf(const Frame& frame) {
  if (frame.kind != Frame::Kind::Verdict) throw FrameError("this is no verdict");
  return frame.number == 1 ? Verdict::MayRead : frame.number == 2 ? Verdict::MayWrite : Verdict::Refused;
}

Frame frameOf(Verdict verdict) {
  return {Frame::Kind::Verdict, static_cast<std::uint64_t>(verdict), {}};
}

}  // namespace ZebManager
