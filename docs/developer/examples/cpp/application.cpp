// An application object of the host's own, which tells what is asked of it.
#include <zel/profile_control.h>

#include <cstdio>
#include <memory>
#include <set>
#include <string>
#include <vector>

class Application final : public zel::Dispatch {
 public:
  std::set<std::string> asked;  // since it was last emptied

  std::int32_t dispatchId(std::string_view name) const override {
    for (std::size_t i = 0; i < kNames.size(); ++i)
      if (kNames[i] == name) return static_cast<std::int32_t>(i + 1);
    throw zel::AutomationError(zel::AutomationErrorCode::kMemberNotFound, std::string(name) + "?");
  }

  zel::AutomationValue invoke(std::int32_t id, zel::Access access,
                              std::span<const zel::AutomationValue>) override {
    if (access != zel::Access::kGet)
      throw zel::AutomationError(zel::AutomationErrorCode::kWrongAccess, "properties are read only");
    const std::string& name = kNames.at(static_cast<std::size_t>(id - 1));
    asked.insert(name);
    if (name == "Title") return "Host Planner";     // names the settings; heads captions and messages
    if (name == "Path") return ".";                 // the folder of zelErrorLog.txt; it must be there
    if (name == "ProductName") return "Planner 4";  // shown with the version
    if (name == "HelpFile") return "";              // empty: the installed guide
    return std::int32_t{4};                         // Major, Minor, Revision
  }

 private:
  const std::vector<std::string> kNames{"Title", "Path",  "ProductName", "HelpFile",
                                        "Major", "Minor", "Revision"};
};

static void tell(const char* when, Application& application) {
  std::printf("%s:", when);
  for (const std::string& name : application.asked) std::printf(" %s", name.c_str());
  std::printf("\n");
  application.asked.clear();
}

int main() {
  const auto application = std::make_shared<Application>();
  zel::ProfileControl profiler;
  profiler.SetClientApp(application);
  tell("SetClientApp", *application);
  profiler.GetPathLoss({36.40, -84.35, 30}, {36.22, -84.12, 30});
  tell("GetPathLoss", *application);
  profiler.GetPathLoss({50, 10, 30}, {50.1, 10, 30});  // no terrain there: a failure, which is logged
  tell("a failure", *application);
}
