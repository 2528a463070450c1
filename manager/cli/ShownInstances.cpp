#include "cli/ShownInstances.h"

#include "cimxml/Answer.h"

namespace ZebManager {
namespace {

// No CIM-XML begins so.
constexpr std::string_view kPlain = "show plain ";
constexpr std::string_view kTyped = "show typed ";

}  // namespace

std::string shownMessage(std::string_view className, JsonForm form) {
  return std::string(form == JsonForm::Plain ? kPlain : kTyped).append(className);
}

std::optional<ShownQuestion> shownAskedFor(std::string_view message) {
  for (const JsonForm form : {JsonForm::Plain, JsonForm::Typed}) {
    const std::string start = shownMessage("", form);
    if (message.starts_with(start)) return ShownQuestion{std::string(message.substr(start.size())), form};
  }
  return std::nullopt;
}

std::string jsonOfClass(Namespace& model, const ShownQuestion& question) {
  return jsonOfInstances(question.form, [&](const TakeInstance& take) {
    static_cast<void>(model.forEachInstance(question.className, nullptr, take).orThrow());
  });
}

std::string shownInstances(Namespace& model, const ShownQuestion& question) {
  try {
    return jsonOfClass(model, question);
  } catch (const CimError& error) {
    return errorAnswer(CimMessage(), error.code, descriptionOf(error));
  }
}

}  // namespace ZebManager
