#include "zel/c_api.h"

#include <QApplication>
#include <QEventLoop>
#include <QThread>
#include <charconv>
#include <cstring>
#include <exception>
#include <new>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "component/desktop/desktop_dialogs.h"
#include "component/desktop/desktop_process.h"
#include "component/own_application.h"
#include "foundation/text.h"
#include "zel/automation.h"
#include "zel/profile_control.h"

struct zelProfiler {
  std::shared_ptr<zel::ProfileControl> control = std::make_shared<zel::ProfileControl>();
};

struct zelObject {
  zel::DispatchPtr object;
  std::string text;  // of the last result
};

namespace {

using zel::AutomationError;
using zel::AutomationErrorCode;
using zel::AutomationValue;
using zel::DispatchPtr;
using Kind = zel::AutomationValue::Kind;

// A code to return, on its way out.
struct Refusal {
  int code;
  const char* text;
};

constexpr Refusal kNullPointer{ZEL_NULL_POINTER, "an argument that must not be NULL is NULL"};

std::string& lastError() {
  thread_local std::string text;
  return text;
}

int failed(int code, const char* text) noexcept {
  try {
    lastError() = text;
  } catch (...) {
    return ZEL_OUT_OF_MEMORY;
  }
  return code;
}

int codeOf(AutomationErrorCode code) {
  switch (code) {
    case AutomationErrorCode::kMemberNotFound:
      return ZEL_MEMBER_NOT_FOUND;
    case AutomationErrorCode::kWrongAccess:
      return ZEL_WRONG_ACCESS;
    case AutomationErrorCode::kWrongArgumentCount:
      return ZEL_WRONG_ARGUMENT_COUNT;
    case AutomationErrorCode::kTypeMismatch:
      return ZEL_TYPE_MISMATCH;
    case AutomationErrorCode::kOverflow:
      return ZEL_OVERFLOW;
    case AutomationErrorCode::kWrongThread:
      return ZEL_WRONG_THREAD;
    case AutomationErrorCode::kFailed:
      return ZEL_FAILED;
  }
  return ZEL_FAILED;
}

// Every function runs in here: nothing that is thrown crosses the boundary.
template <typename Body>
int guarded(Body&& body) noexcept {
  try {
    body();
    return ZEL_OK;
  } catch (const Refusal& refusal) {
    return failed(refusal.code, refusal.text);
  } catch (const AutomationError& error) {
    return failed(codeOf(error.code()), error.what());
  } catch (const std::bad_alloc&) {
    return failed(ZEL_OUT_OF_MEMORY, "out of memory");
  } catch (const std::exception& error) {
    return failed(ZEL_FAILED, error.what());
  } catch (...) {
    return failed(ZEL_FAILED, "unknown failure");
  }
}

template <typename... Pointers>
void refuseNull(const Pointers*... pointers) {
  if ((... || !pointers)) throw kNullPointer;
}

// Kept by the call: under a box that it shows the host may release the profiler.
auto controlOf(zelProfiler* profiler) {
  refuseNull(profiler);
  return profiler->control;
}

// Reads a member into the caller's variable.
template <typename Result, typename Read>
int readInto(zelProfiler* profiler, Result* value, Read&& read) noexcept {
  return guarded([&] {
    refuseNull(value);
    *value = static_cast<Result>(read(*controlOf(profiler)));
  });
}

template <typename Write>
int write(zelProfiler* profiler, Write&& member) noexcept {
  return guarded([&] { member(*controlOf(profiler)); });
}

template <typename Write>
int writeText(zelProfiler* profiler, const char* text, Write&& member) noexcept {
  return guarded([&] {
    refuseNull(text);
    member(*controlOf(profiler), std::string(text));
  });
}

// A new handle in the caller's variable; NULL for no object.
void handOut(const DispatchPtr& object, zelObject** handle) {
  *handle = object == nullptr ? nullptr : new zelObject{object, {}};
}

std::string textOf(const char* text) { return text == nullptr ? std::string() : std::string(text); }

// A host's application whose properties are read by its own function.
class CallbackApplication final : public zel::Dispatch {
 public:
  explicit CallbackApplication(const zelApplicationCallbacks& callbacks) : callbacks_(callbacks) {}
  ~CallbackApplication() override {
    if (callbacks_.release != nullptr) callbacks_.release(callbacks_.context);
  }

  std::int32_t dispatchId(std::string_view name) const override {
    for (std::size_t i = 0; i < std::size(kNames); ++i)
      if (zel::equalIgnoringCase(kNames[i], name)) return static_cast<std::int32_t>(i + 1);
    throw AutomationError(AutomationErrorCode::kMemberNotFound, "there is no property " + std::string(name));
  }

  AutomationValue invoke(std::int32_t id, zel::Access access,
                         std::span<const AutomationValue> arguments) override {
    if (id < 1 || static_cast<std::size_t>(id) > std::size(kNames))
      throw AutomationError(AutomationErrorCode::kMemberNotFound, "there is no member " + std::to_string(id));
    const char* name = kNames[id - 1];
    if (access != zel::Access::kGet)
      throw AutomationError(AutomationErrorCode::kWrongAccess, std::string(name) + " can only be read");
    if (!arguments.empty())
      throw AutomationError(AutomationErrorCode::kWrongArgumentCount,
                            std::string(name) + " takes no arguments");
    const char* text = callbacks_.read(callbacks_.context, name);
    if (text == nullptr)
      throw AutomationError(AutomationErrorCode::kMemberNotFound,
                            "there is no property " + std::string(name));
    if (id < kFirstNumber) return text;
    return number(name, text);
  }

 private:
  static constexpr const char* kNames[] = {"Title", "Path",  "ProductName", "HelpFile",
                                           "Major", "Minor", "Revision"};
  static constexpr std::int32_t kFirstNumber = 5;  // Major

  static AutomationValue number(const char* name, const char* text) {
    std::int32_t value = 0;
    const char* end = text + std::strlen(text);
    const auto parsed = std::from_chars(text, end, value);
    if (parsed.ec == std::errc::result_out_of_range)
      throw AutomationError(AutomationErrorCode::kOverflow, std::string(name) + " does not fit into 32 bits");
    if (parsed.ec != std::errc() || parsed.ptr != end)
      throw AutomationError(AutomationErrorCode::kTypeMismatch, std::string(name) + " is no whole number");
    return value;
  }

  zelApplicationCallbacks callbacks_;
};

AutomationValue valueOf(const zelValue& value) {
  switch (value.kind) {
    case ZEL_EMPTY:
      return {};
    case ZEL_BOOLEAN:
      return value.as.boolean != 0;
    case ZEL_INT16:
      return value.as.int16;
    case ZEL_INT32:
      return value.as.int32;
    case ZEL_FLOAT32:
      return value.as.float32;
    case ZEL_FLOAT64:
      return value.as.float64;
    case ZEL_TEXT:
      refuseNull(value.as.text);
      return value.as.text;
    case ZEL_OBJECT:
      return value.as.object == nullptr ? DispatchPtr() : value.as.object->object;
    default:
      throw Refusal{ZEL_OUT_OF_RANGE, "a value is of no known kind"};
  }
}

// The result in the caller's variable; its text is kept by the object that gave it.
void handOutValue(const AutomationValue& value, zelObject& owner, zelValue* result) {
  result->kind = static_cast<std::int32_t>(value.kind());
  switch (value.kind()) {
    case Kind::kEmpty:
      result->as.int32 = 0;
      return;
    case Kind::kBoolean:
      result->as.boolean = value.toBoolean() ? 1 : 0;
      return;
    case Kind::kInt16:
      result->as.int16 = value.toInt16();
      return;
    case Kind::kInt32:
      result->as.int32 = value.toInt32();
      return;
    case Kind::kFloat32:
      result->as.float32 = value.toFloat32();
      return;
    case Kind::kFloat64:
      result->as.float64 = value.toFloat64();
      return;
    case Kind::kText:
      owner.text = value.toText();
      result->as.text = owner.text.c_str();
      return;
    case Kind::kObject:
      handOut(value.toObject(), &result->as.object);
      return;
  }
}

zel::Access accessOf(int access) {
  switch (access) {
    case ZEL_GET:
      return zel::Access::kGet;
    case ZEL_LET:
      return zel::Access::kLet;
    case ZEL_METHOD:
      return zel::Access::kMethod;
    default:
      throw Refusal{ZEL_OUT_OF_RANGE, "the access is none of ZEL_GET, ZEL_LET and ZEL_METHOD"};
  }
}

// Before anything is freed. Any member does; this one asks for no more than its thread.
void refuseForeignThread(zel::ProfileControl& control) { control.get_hWnd(); }

void needApplication() {
  if (qobject_cast<QApplication*>(QCoreApplication::instance()) == nullptr)
    throw Refusal{ZEL_NO_EVENT_LOOP, "the process has no graphical application"};
  if (!zel::canShowWidgets())
    throw Refusal{ZEL_WRONG_THREAD, "the graphical application belongs to another thread"};
}

}  // namespace

const char* zelProfilerLastError(void) {
  try {
    return lastError().c_str();
  } catch (...) {
    return "";
  }
}

const char* zelProfilerVersion(void) { return zel::componentVersion(); }

int zelProfilerCreate(zelProfiler** profiler) {
  return guarded([&] {
    refuseNull(profiler);
    *profiler = nullptr;
    *profiler = new zelProfiler;
  });
}

int zelProfilerRelease(zelProfiler* profiler) {
  return guarded([&] {
    if (profiler == nullptr) return;
    refuseForeignThread(*profiler->control);
    // With an object of it alive the control lives on; its windows do not.
    if (profiler->control.use_count() > 1) profiler->control->UnloadMainForm();
    delete profiler;
  });
}

int zelProfilerRun(int* exitCode) {
  return guarded([&] {
    needApplication();
    if (QThread::currentThread()->loopLevel() > 0)
      throw Refusal{ZEL_EVENT_LOOP_RUNNING, "the event loop is running already"};
    const std::optional<int> kept = zel::keptQuitRequest();
    zel::forgetQuitRequest();
    const int code = kept ? *kept : QApplication::exec();
    if (exitCode != nullptr) *exitCode = code;
  });
}

int zelProfilerProcessEvents(int milliseconds) {
  return guarded([&] {
    if (milliseconds < 0) throw Refusal{ZEL_OUT_OF_RANGE, "the time is negative"};
    needApplication();
    QCoreApplication::processEvents(QEventLoop::AllEvents, milliseconds);
    if (zel::keptQuitRequest()) throw Refusal{ZEL_QUIT, "the user chose not to continue after a failure"};
  });
}

int zelProfilerGetElevLines(zelProfiler* profiler, int16_t* value) {
  return readInto(profiler, value, [](auto& control) { return control.get_ElevLines(); });
}

int zelProfilerLetElevLines(zelProfiler* profiler, int16_t vNewValue) {
  return write(profiler, [=](auto& control) { control.let_ElevLines(vNewValue); });
}

int zelProfilerExportDataToCSV(zelProfiler* profiler, const char* outfile) {
  return writeText(profiler, outfile,
                   [](auto& control, const std::string& text) { control.ExportDataToCSV(text); });
}

int zelProfilerExportITMToCSV(zelProfiler* profiler, const char* outfile) {
  return writeText(profiler, outfile,
                   [](auto& control, const std::string& text) { control.ExportITMToCSV(text); });
}

int zelProfilerGetOFrmLoaded(zelProfiler* profiler, int* value) {
  return readInto(profiler, value, [](auto& control) { return control.get_OFrmLoaded(); });
}

int zelProfilerGetOptionButtonVisible(zelProfiler* profiler, int* value) {
  return readInto(profiler, value, [](auto& control) { return control.get_OptionButtonVisible(); });
}

int zelProfilerLetOptionButtonVisible(zelProfiler* profiler, int vNewValue) {
  return write(profiler, [=](auto& control) { control.let_OptionButtonVisible(vNewValue != 0); });
}

int zelProfilerLetOwnerName(zelProfiler* profiler, const char* vNewValue) {
  return writeText(profiler, vNewValue,
                   [](auto& control, const std::string& text) { control.let_OwnerName(text); });
}

int zelProfilerGetPForm(zelProfiler* profiler, zelObject** window) {
  return guarded([&] {
    refuseNull(window);
    *window = nullptr;
    handOut(controlOf(profiler)->get_PForm(), window);
  });
}

int zelProfilerGetPFrmLoaded(zelProfiler* profiler, int* value) {
  return readInto(profiler, value, [](auto& control) { return control.get_PFrmLoaded(); });
}

int zelProfilerLetPrintDescription(zelProfiler* profiler, const char* vNewValue) {
  return writeText(profiler, vNewValue,
                   [](auto& control, const std::string& text) { control.let_PrintDescription(text); });
}

int zelProfilerLetPrintLandscape(zelProfiler* profiler, int vNewValue) {
  return write(profiler, [=](auto& control) { control.let_PrintLandscape(vNewValue != 0); });
}

int zelProfilerPrintProfile(zelProfiler* profiler, int* value) {
  return readInto(profiler, value, [](auto& control) { return control.PrintProfile(); });
}

int zelProfilerLetProgName(zelProfiler* profiler, const char* vNewValue) {
  return writeText(profiler, vNewValue,
                   [](auto& control, const std::string& text) { control.let_ProgName(text); });
}

int zelProfilerGetRangeLines(zelProfiler* profiler, int16_t* value) {
  return readInto(profiler, value, [](auto& control) { return control.get_RangeLines(); });
}

int zelProfilerLetRangeLines(zelProfiler* profiler, int16_t vNewValue) {
  return write(profiler, [=](auto& control) { control.let_RangeLines(vNewValue); });
}

int zelProfilerSetClientApp(zelProfiler* profiler, zelObject* ClientApp) {
  return write(profiler, [=](auto& control) {
    control.SetClientApp(ClientApp == nullptr ? DispatchPtr() : ClientApp->object);
  });
}

int zelProfilerGetPathLoss(zelProfiler* profiler, const StationProfile_Type* Sta1,
                           const StationProfile_Type* Sta2, float* value) {
  return readInto(profiler, value, [=](auto& control) {
    refuseNull(Sta1, Sta2);
    return control.GetPathLoss(*Sta1, *Sta2);
  });
}

int zelProfilerShowMainForm(zelProfiler* profiler, const StationProfile_Type* Sta1,
                            const StationProfile_Type* Sta2) {
  return write(profiler, [=](auto& control) {
    refuseNull(Sta1, Sta2);
    control.ShowMainForm(*Sta1, *Sta2);
  });
}

int zelProfilerShowOptionsForm(zelProfiler* profiler) {
  return write(profiler, [](auto& control) { control.ShowOptionsForm(); });
}

int zelProfilerGetStaDatum(zelProfiler* profiler, int32_t* value) {
  return readInto(profiler, value, [](auto& control) { return control.get_StaDatum(); });
}

int zelProfilerLetStaDatum(zelProfiler* profiler, int32_t vNewValue) {
  return write(profiler, [=](auto& control) { control.let_StaDatum(vNewValue); });
}

int zelProfilerUnloadMainForm(zelProfiler* profiler) {
  return write(profiler, [](auto& control) { control.UnloadMainForm(); });
}

int zelProfilerGethWnd(zelProfiler* profiler, int32_t* value) {
  return readInto(profiler, value, [](auto& control) { return control.get_hWnd(); });
}

int zelApplicationCreate(const zelApplication* properties, zelObject** application) {
  return guarded([&] {
    refuseNull(properties, application);
    *application = nullptr;
    handOut(zel::makePropertyBag({{"Title", textOf(properties->title)},
                                  {"Path", textOf(properties->path)},
                                  {"ProductName", textOf(properties->productName)},
                                  {"HelpFile", textOf(properties->helpFile)},
                                  {"Major", properties->major},
                                  {"Minor", properties->minor},
                                  {"Revision", properties->revision}}),
            application);
  });
}

int zelApplicationCreateFromCallbacks(const zelApplicationCallbacks* callbacks, zelObject** application) {
  return guarded([&] {
    refuseNull(callbacks, application);
    *application = nullptr;
    if (callbacks->read == nullptr) throw kNullPointer;
    handOut(std::make_shared<CallbackApplication>(*callbacks), application);
  });
}

int zelProfilerObject(zelProfiler* profiler, zelObject** object) {
  return guarded([&] {
    refuseNull(profiler, object);
    *object = nullptr;
    handOut(profiler->control, object);
  });
}

int zelStationCreate(const StationProfile_Type* station, zelObject** object) {
  return guarded([&] {
    refuseNull(station, object);
    *object = nullptr;
    handOut(zel::makeStation(*station), object);
  });
}

int zelObjectInvoke(zelObject* object, const char* member, int access, const zelValue* arguments,
                    size_t count, zelValue* result) {
  return guarded([&] {
    refuseNull(object, member);
    if (arguments == nullptr && count > 0) throw kNullPointer;
    if (result != nullptr) *result = zelValue{};
    std::vector<AutomationValue> values;
    for (std::size_t i = 0; i < count; ++i) values.push_back(valueOf(arguments[i]));
    const AutomationValue value =
        object->object->invoke(object->object->dispatchId(member), accessOf(access), values);
    if (result != nullptr) handOutValue(value, *object, result);
  });
}

int zelObjectRelease(zelObject* object) {
  return guarded([&] {
    if (object == nullptr) return;
    auto* control = dynamic_cast<zel::ProfileControl*>(object->object.get());
    if (control != nullptr) refuseForeignThread(*control);
    delete object;
  });
}
