#include "ui/profile_window/profile_form_object.h"

#include <QAbstractButton>
#include <QAbstractSlider>
#include <QAction>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "foundation/text.h"

namespace zel {
namespace {

constexpr int kTwipsPerPixel = 15;

[[noreturn]] void fail(AutomationErrorCode code, const std::string& text) {
  throw AutomationError(code, text);
}

void refuseArguments(std::span<const AutomationValue> arguments, const std::string& member) {
  if (!arguments.empty())
    fail(AutomationErrorCode::kWrongArgumentCount, "member '" + member + "' takes no argument");
}

const AutomationValue& newValue(std::span<const AutomationValue> arguments, const std::string& member) {
  if (arguments.size() != 1)
    fail(AutomationErrorCode::kWrongArgumentCount, "member '" + member + "' is set to one value");
  return arguments.front();
}

// The visible text without the marks of the keyboard's access.
QString plain(QString text) {
  const QString marked = QStringLiteral("&");
  text.replace(QStringLiteral("&&"), QString(QChar(1)));
  text.remove(marked);
  return text.replace(QChar(1), marked);
}

class ControlObject final : public Dispatch {
 public:
  ControlObject(QObject* control, std::function<void()> checkThread)
      : control_(control), name_(control->objectName().toStdString()), checkThread_(std::move(checkThread)) {}

  std::int32_t dispatchId(std::string_view name) const override {
    for (std::size_t i = 0; i < kMembers.size(); ++i)
      if (equalIgnoringCase(kMembers.at(i), name)) return static_cast<std::int32_t>(i + 1);
    fail(AutomationErrorCode::kMemberNotFound,
         "the control '" + name_ + "' has no member '" + std::string(name) + "'");
  }

  AutomationValue invoke(std::int32_t id, Access access,
                         std::span<const AutomationValue> arguments) override {
    checkThread_();
    if (id < 1 || static_cast<std::size_t>(id) > kMembers.size())
      fail(AutomationErrorCode::kMemberNotFound, "the control has no member of id " + std::to_string(id));
    const std::string member(kMembers.at(static_cast<std::size_t>(id - 1)));
    if (control_.isNull() || windowIsUnloaded())
      fail(AutomationErrorCode::kFailed, "the window of the control '" + name_ + "' has been unloaded");
    if (access == Access::kMethod) {
      refuseArguments(arguments, member);
      return call(member);
    }
    if (access == Access::kLet) {
      let(member, newValue(arguments, member));
      return {};
    }
    refuseArguments(arguments, member);
    return get(member);
  }

 private:
  static constexpr std::array<std::string_view, 8> kMembers{"Name",    "Text",    "Caption", "Value",
                                                            "Enabled", "Visible", "Click",   "SetFocus"};

  template <typename Type>
  Type* as() const {
    return qobject_cast<Type*>(control_.data());
  }

  [[noreturn]] void refuse(const std::string& member, const char* what) const {
    fail(AutomationErrorCode::kWrongAccess,
         "the member '" + member + "' of '" + name_ + "' cannot be " + what);
  }

  AutomationValue get(const std::string& member) const {
    if (member == "Name") return name_;
    if (member == "Text" || member == "Caption") return text(member).toStdString();
    if (member == "Value") {
      if (const auto* slider = as<QAbstractSlider>()) return slider->value();
      const auto* button = as<QAbstractButton>();
      if (button != nullptr && button->isCheckable()) return button->isChecked();
    }
    if (member == "Enabled" || member == "Visible") return state(member == "Enabled");
    refuse(member, "read");
  }

  QString text(const std::string& member) const {
    if (const auto* box = as<QLineEdit>(); box != nullptr && member == "Text") return box->text();
    if (const auto* label = as<QLabel>()) return plain(label->text());
    if (member == "Caption") {
      if (const auto* button = as<QAbstractButton>()) return plain(button->text());
      if (const auto* frame = as<QGroupBox>()) return plain(frame->title());
      if (const auto* item = as<QAction>()) return plain(item->text());
    }
    refuse(member, "read");
  }

  bool state(bool enabled) const {
    if (const auto* item = as<QAction>()) return enabled ? item->isEnabled() : item->isVisible();
    const auto* widget = as<QWidget>();
    return enabled ? widget->isEnabled() : !widget->isHidden();
  }

  void let(const std::string& member, const AutomationValue& value) {
    if (member == "Enabled" || member == "Visible") return setState(member == "Enabled", value.toBoolean());
    if (member == "Text" || member == "Caption")
      return setText(member, QString::fromStdString(value.toText()));
    if (member == "Value") return setValue(value);
    refuse(member, "set");
  }

  void setState(bool enabled, bool on) {
    if (auto* item = as<QAction>()) return enabled ? item->setEnabled(on) : item->setVisible(on);
    auto* widget = as<QWidget>();
    if (enabled) {
      widget->setEnabled(on);
    } else {
      widget->setVisible(on);
    }
  }

  void setText(const std::string& member, const QString& text) {
    if (auto* box = as<QLineEdit>(); box != nullptr && member == "Text") {
      const QPointer<QLineEdit> typed(box);
      box->setText(text);
      box->setModified(true);
      box->textEdited(text);
      if (!typed.isNull()) box->editingFinished();
      return;
    }
    if (auto* label = as<QLabel>()) return label->setText(text);
    if (member == "Caption") {
      if (auto* button = as<QAbstractButton>()) return button->setText(text);
      if (auto* frame = as<QGroupBox>()) return frame->setTitle(text);
      if (auto* item = as<QAction>()) return item->setText(text);
    }
    refuse(member, "set");
  }

  void setValue(const AutomationValue& value) {
    if (auto* slider = as<QAbstractSlider>()) return slider->setValue(value.toInt32());
    auto* button = as<QAbstractButton>();
    if (button == nullptr || !button->isCheckable()) refuse("Value", "set");
    if (value.toBoolean()) button->click();
  }

  AutomationValue call(const std::string& member) {
    if (member == "Click") {
      if (auto* button = as<QAbstractButton>()) {
        button->click();
        return {};
      }
      if (auto* item = as<QAction>()) {
        item->trigger();
        return {};
      }
    }
    if (member == "SetFocus") {
      if (auto* widget = as<QWidget>()) {
        widget->setFocus(Qt::OtherFocusReason);
        return {};
      }
    }
    refuse(member, "called");
  }

  // A menu item belongs to its menu, which belongs to the window.
  bool windowIsUnloaded() const {
    const QObject* owner = control_.data();
    while (owner != nullptr && dynamic_cast<const FrmProfile*>(owner) == nullptr) owner = owner->parent();
    return owner != nullptr && static_cast<const FrmProfile*>(owner)->isUnloaded();
  }

  QPointer<QObject> control_;
  std::string name_;
  std::function<void()> checkThread_;
};

class ProfileFormObject final : public Dispatch {
 public:
  explicit ProfileFormObject(ProfileFormHost host) : host_(std::move(host)) {
    addProperties();
    addMethods();
    form_ = host_.make();
    addControls();
  }

  ~ProfileFormObject() override {
    if (!form_.isNull() && host_.onOwnThread()) host_.release(form_.data());
  }

  std::int32_t dispatchId(std::string_view name) const override {
    for (std::size_t i = 0; i < members_.size(); ++i)
      if (equalIgnoringCase(members_[i].name, name)) return static_cast<std::int32_t>(i + 1);
    fail(AutomationErrorCode::kMemberNotFound, "the window has no member '" + std::string(name) + "'");
  }

  AutomationValue invoke(std::int32_t id, Access access,
                         std::span<const AutomationValue> arguments) override {
    host_.checkThread();
    if (id < 1 || static_cast<std::size_t>(id) > members_.size())
      fail(AutomationErrorCode::kMemberNotFound, "the window has no member of id " + std::to_string(id));
    const Member& member = members_[static_cast<std::size_t>(id - 1)];
    const auto& function = access == Access::kGet   ? member.get
                           : access == Access::kLet ? member.let
                                                    : member.call;
    if (!function)
      fail(AutomationErrorCode::kWrongAccess, "the member '" + member.name + "' of the window cannot be " +
                                                  (access == Access::kGet   ? "read"
                                                   : access == Access::kLet ? "set"
                                                                            : "called"));
    return function(arguments);
  }

 private:
  using Arguments = std::span<const AutomationValue>;
  using Function = std::function<AutomationValue(Arguments)>;
  struct Member {
    std::string name;
    Function get;
    Function let;
    Function call;
  };

  // The window, made anew when the last one has been unloaded.
  FrmProfile& form() {
    if (form_.isNull() || form_->isUnloaded()) form_ = host_.make();
    form_->contour = contour_;
    return *form_;
  }

  // The same with its path read and laid out, as a control's first use needs it.
  FrmProfile& loaded() {
    FrmProfile& window = form();
    if (!window.isLoaded()) window.Form_Load();
    return window;
  }

  void property(const std::string& name, std::function<AutomationValue(FrmProfile&)> get,
                std::function<void(FrmProfile&, const AutomationValue&)> let = {}) {
    Member member{name, {}, {}, {}};
    member.get = [this, name, get = std::move(get)](Arguments arguments) {
      refuseArguments(arguments, name);
      return get(form());
    };
    if (let)
      member.let = [this, name, let = std::move(let)](Arguments arguments) {
        let(form(), newValue(arguments, name));
        return AutomationValue();
      };
    members_.push_back(std::move(member));
  }

  void method(const std::string& name, std::function<AutomationValue(FrmProfile&)> body) {
    members_.push_back({name, {}, {}, [this, name, body = std::move(body)](Arguments arguments) {
                          refuseArguments(arguments, name);
                          return body(loaded());
                        }});
  }
  void procedure(const std::string& name, void (FrmProfile::*body)()) {
    method(name, [body](FrmProfile& window) {
      (window.*body)();
      return AutomationValue();
    });
  }

  // Takes the path of the file.
  void exportTo(const std::string& name, void (FrmProfile::*body)(const std::string&)) {
    members_.push_back({name, {}, {}, [this, name, body](Arguments arguments) {
                          if (arguments.size() != 1)
                            fail(AutomationErrorCode::kWrongArgumentCount,
                                 "member '" + name + "' takes one argument, the file's path");
                          const std::string outfile = arguments.front().toText();
                          (loaded().*body)(outfile);
                          return AutomationValue();
                        }});
  }

  // Printer, copies, orientation, and perhaps the description.
  void addPrinting() {
    members_.push_back({"PrintProfile", {}, {}, [this](Arguments arguments) {
                          if (arguments.size() != 3 && arguments.size() != 4)
                            fail(AutomationErrorCode::kWrongArgumentCount,
                                 "member 'PrintProfile' takes the printer, the copies, the orientation and, "
                                 "if wanted, the description");
                          const std::string printer = arguments[0].toText();
                          const std::int32_t copies = arguments[1].toInt32();
                          const std::int32_t orientation = arguments[2].toInt32();
                          std::optional<std::string> description;
                          if (arguments.size() == 4) description = arguments[3].toText();
                          return AutomationValue(
                              loaded().PrintProfileOn(printer, copies, orientation, description));
                        }});
    procedure("mnuPrint_Click", &FrmProfile::mnuPrint_Click);
    procedure("mnuPrintPreview_Click", &FrmProfile::mnuPrintPreview_Click);
  }

  void addProperties() {
    property(
        "Caption", [](FrmProfile& window) { return AutomationValue(window.windowTitle().toStdString()); },
        [](FrmProfile& window, const AutomationValue& value) {
          window.setWindowTitle(QString::fromStdString(value.toText()));
        });
    property(
        "Visible", [](FrmProfile& window) { return AutomationValue(window.isVisible()); },
        [this](FrmProfile&, const AutomationValue& value) { show(value.toBoolean()); });
    const auto twips = [](int pixels) { return AutomationValue(pixels * kTwipsPerPixel); };
    const auto pixels = [](const AutomationValue& value) { return value.toInt32() / kTwipsPerPixel; };
    property(
        "Left", [twips](FrmProfile& window) { return twips(window.x()); },
        [pixels](FrmProfile& window, const AutomationValue& value) {
          window.move(pixels(value), window.y());
        });
    property(
        "Top", [twips](FrmProfile& window) { return twips(window.y()); },
        [pixels](FrmProfile& window, const AutomationValue& value) {
          window.move(window.x(), pixels(value));
        });
    property(
        "Width", [twips](FrmProfile& window) { return twips(window.width()); },
        [pixels](FrmProfile& window, const AutomationValue& value) {
          window.resize(pixels(value), window.height());
        });
    property(
        "Height", [twips](FrmProfile& window) { return twips(window.height()); },
        [pixels](FrmProfile& window, const AutomationValue& value) {
          window.resize(window.width(), pixels(value));
        });
    property("hWnd", [](FrmProfile& window) {
      return AutomationValue(static_cast<std::int32_t>(static_cast<std::uint32_t>(window.winId())));
    });
    property(
        "Contour", [this](FrmProfile&) { return AutomationValue(contour_); },
        [this](FrmProfile& window, const AutomationValue& value) {
          contour_ = value.toBoolean();
          window.contour = contour_;
        });
  }

  void show(bool visible) {
    FrmProfile& window = form();
    if (!visible) return window.hide();
    window.open();
  }

  void addMethods() {
    members_.push_back({"Show", {}, {}, [this](Arguments arguments) {
                          refuseArguments(arguments, "Show");
                          show(true);
                          return AutomationValue();
                        }});
    members_.push_back({"Hide", {}, {}, [this](Arguments arguments) {
                          refuseArguments(arguments, "Hide");
                          show(false);
                          return AutomationValue();
                        }});
    members_.push_back({"Unload", {}, {}, [this](Arguments arguments) {
                          refuseArguments(arguments, "Unload");
                          if (!form_.isNull()) form_->unload();
                          return AutomationValue();
                        }});
    procedure("InitFromRegistry", &FrmProfile::InitFromRegistry);
    procedure("SetDistanceLabels", &FrmProfile::SetDistanceLabels);
    procedure("SetStartEndPointLabels", &FrmProfile::SetStartEndPointLabels);
    procedure("ValidateInfo", &FrmProfile::ValidateInfo);
    procedure("LoadFormSettings", &FrmProfile::LoadFormSettings);
    procedure("DoPreCalc", &FrmProfile::DoPreCalc);
    procedure("MinMaxAv", &FrmProfile::MinMaxAv);
    procedure("drawLine", &FrmProfile::drawLine);
    procedure("UpdateModeledLoss", &FrmProfile::UpdateModeledLoss);
    procedure("mnuProfileExpand_Click", &FrmProfile::mnuProfileExpand_Click);
    procedure("mnuProfileLinkBudget_Click", &FrmProfile::mnuProfileLinkBudget_Click);
    procedure("mnuProfileOptions_Click", &FrmProfile::mnuProfileOptions_Click);
    procedure("cmdExit_Click", &FrmProfile::cmdExit_Click);
    procedure("mnuEditCopyPicture_Click", &FrmProfile::mnuEditCopyPicture_Click);
    procedure("mnuEditCopyValues_Click", &FrmProfile::mnuEditCopyValues_Click);
    procedure("mnuExportBMP_Click", &FrmProfile::mnuExportBMP_Click);
    procedure("mnuExportProfile_Click", &FrmProfile::mnuExportProfile_Click);
    procedure("mnuExportPathLoss_Click", &FrmProfile::mnuExportPathLoss_Click);
    procedure("mnuExportPathLossGraph_Click", &FrmProfile::mnuExportPathLossGraph_Click);
    procedure("mnuExportPathSignalGraph_Click", &FrmProfile::mnuExportPathSignalGraph_Click);
    procedure("mnuExportPathLossProfile_Click", &FrmProfile::mnuExportPathLossProfile_Click);
    exportTo("lExportDataToCSV", &FrmProfile::lExportDataToCSV);
    exportTo("lExportITMToCSV", &FrmProfile::lExportITMToCSV);
    exportTo("lExportSignalProfileToCSV", &FrmProfile::lExportSignalProfileToCSV);
    exportTo("lMakeGNUSignalPlot", &FrmProfile::lMakeGNUSignalPlot);
    addPrinting();
    method("cmdClear1_Click", [](FrmProfile& window) {
      window.cmdClear_Click(0);
      return AutomationValue();
    });
    method("cmdClear2_Click", [](FrmProfile& window) {
      window.cmdClear_Click(1);
      return AutomationValue();
    });
    method("MenuHeight",
           [](FrmProfile& window) { return AutomationValue(window.MenuHeight() * kTwipsPerPixel); });
    method("WindowTitleHeight",
           [](FrmProfile& window) { return AutomationValue(window.WindowTitleHeight() * kTwipsPerPixel); });
  }

  // The names are those of the window that was made first; every one has the same.
  void addControls() {
    for (const QObject* control : form_->findChildren<QObject*>()) {
      const QString name = control->objectName();
      const bool wanted = control->isWidgetType() || qobject_cast<const QAction*>(control) != nullptr;
      if (!wanted || name.isEmpty() || name.startsWith(QLatin1String("qt_"))) continue;
      addControl(name.section(QLatin1Char('('), 0, 0).toStdString());
    }
  }

  void addControl(const std::string& name) {
    for (const Member& member : members_)
      if (equalIgnoringCase(member.name, name)) return;
    members_.push_back(
        {name, [this, name](Arguments arguments) { return control(name, arguments); }, {}, {}});
  }

  AutomationValue control(const std::string& name, Arguments arguments) {
    if (arguments.size() > 1)
      fail(AutomationErrorCode::kWrongArgumentCount, "the control '" + name + "' takes one index at most");
    QString wanted = QString::fromStdString(name);
    if (!arguments.empty()) wanted += QStringLiteral("(%1)").arg(arguments.front().toInt32());
    QObject* found = loaded().findChild<QObject*>(wanted);
    if (found == nullptr && arguments.empty())
      fail(AutomationErrorCode::kWrongArgumentCount,
           "the controls '" + name + "' are a group: give an index");
    if (found == nullptr)
      fail(AutomationErrorCode::kFailed, "there is no control '" + wanted.toStdString() + "'");
    return std::make_shared<ControlObject>(found, host_.checkThread);
  }

  ProfileFormHost host_;
  std::vector<Member> members_;
  QPointer<FrmProfile> form_;
  bool contour_ = false;
};

}  // namespace

DispatchPtr makeProfileFormObject(ProfileFormHost host) {
  return std::make_shared<ProfileFormObject>(std::move(host));
}

}  // namespace zel
