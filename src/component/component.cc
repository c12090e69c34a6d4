// The component object: creation, properties and the lifecycle handlers the
// host container calls.
#include <utility>

#include "component/component_state.h"
#include "component/dialog_filter.h"
#include "tolva/tolva2011register.h"

namespace tolva {

namespace {

// Extent of the design-time picture (a 32x32 icon at 15 twips per pixel).
constexpr Long kPictureExtentTwips = 480;

// The About form's icon, handed to Icon on first placement.
PictureRef AboutFormIcon() {
  static const PictureRef icon = std::make_shared<Picture>(Picture{"tolva-about.ico", ""});
  return icon;
}

}  // namespace

Tolva2011Register::Tolva2011Register(platform::Services services, HostContainer* container,
                                     Tolva2011RegisterEvents* events) noexcept {
  detail::GuardedVoid([&] {
    s_ = std::make_unique<detail::ComponentState>();
    s_->services = std::move(services);
    s_->container = container;
    s_->events = events;
    // Create: the FTP and read/write flags start false; the dialog filter is set.
    s_->dialog_filter = detail::kDefaultDialogFilter;
    if (s_->services.internet) {
      s_->services.internet->SetTimeouts(static_cast<std::uint32_t>(s_->ftp.connect_timeout_ms),
                                         static_cast<std::uint32_t>(s_->ftp.read_timeout_ms));
    }
  });
}

Tolva2011Register::~Tolva2011Register() = default;

void Tolva2011Register::SetHostContainer(HostContainer* container) noexcept {
  if (s_) s_->container = container;
}
void Tolva2011Register::SetEvents(Tolva2011RegisterEvents* events) noexcept {
  if (s_) s_->events = events;
}

// ---- Properties: a Let stores the value as given and notifies the host ----

#define TOLVA_STRING_PROPERTY(Name, field)                                  \
  std::string Tolva2011Register::Name() const noexcept {                    \
    return detail::Guarded(std::string(), [&] { return s_->props.field; }); \
  }                                                                         \
  void Tolva2011Register::Name(const std::string& value) noexcept {         \
    detail::GuardedVoid([&] { s_->props.field = value; });                  \
    s_->NotifyChanged(#Name);                                               \
  }

TOLVA_STRING_PROPERTY(DirectoryRun, directory_run)
TOLVA_STRING_PROPERTY(ProgramAuthor, program_author)
TOLVA_STRING_PROPERTY(ProgramCompany, program_company)
TOLVA_STRING_PROPERTY(ProgramName, program_name)
TOLVA_STRING_PROPERTY(RegistryApp, registry_app)
TOLVA_STRING_PROPERTY(RegistryBackupFile, registry_backup_file)
#undef TOLVA_STRING_PROPERTY

Single Tolva2011Register::FormSizeRatio() const noexcept {
  return s_->props.form_size_ratio;
}
void Tolva2011Register::FormSizeRatio(Single value) noexcept {
  s_->props.form_size_ratio = value;
  s_->NotifyChanged("FormSizeRatio");
}

PictureRef Tolva2011Register::Icon() const noexcept {
  return s_->props.icon;
}
void Tolva2011Register::Icon(PictureRef value) noexcept {
  s_->props.icon = std::move(value);
  s_->NotifyChanged("Icon");
}

Boolean Tolva2011Register::RegistryBackupLoad() const noexcept {
  return s_->props.registry_backup_load;
}
void Tolva2011Register::RegistryBackupLoad(Boolean value) noexcept {
  s_->props.registry_backup_load = value;
  s_->NotifyChanged("RegistryBackupLoad");
}

Long Tolva2011Register::ReadWriteIncrement() const noexcept {
  return s_->props.read_write_increment;
}
void Tolva2011Register::ReadWriteIncrement(Long value) noexcept {
  s_->props.read_write_increment = value;
  // Notified although it is not persisted: the host's design view shows it.
  s_->NotifyChanged("ReadWriteIncrement");
}

std::string Tolva2011Register::DialogFilter() const noexcept {
  return detail::Guarded(std::string(), [&] { return s_->dialog_filter; });
}

Long Tolva2011Register::ControlWidth() const noexcept {
  return s_->control_width;
}
Long Tolva2011Register::ControlHeight() const noexcept {
  return s_->control_height;
}

// ---- Lifecycle ------------------------------------------------------------

void Tolva2011Register::InitProperties() noexcept {
  detail::GuardedVoid([&] {
    DirectoryRun("");
    FormSizeRatio(detail::kDefaultFormSizeRatio);
    Icon(AboutFormIcon());
    ProgramAuthor("");
    ProgramCompany("");
    ProgramName(detail::kDefaultProgramName);
    RegistryApp("");
    RegistryBackupFile("");
    RegistryBackupLoad(kFalse);
    FTPSecurity(0);
    FTPCertificateFile("");
    // Every other text of the instance emptied, every number zeroed.
    s_->text = textdata::TextDataState{};
    s_->ftp = ftp::SessionState{};
    s_->settings = settings::SettingsState{};
    s_->last_runtime_error = 0;
  });
}

namespace {

// Reads one property; a bag that fails leaves the default in place.
template <class F>
void ReadOne(F&& read) noexcept {
  try {
    read();
  } catch (...) {
  }
}

}  // namespace

void Tolva2011Register::ReadProperties(PropertyBag& bag) noexcept {
  if (!s_) return;
  detail::Properties& p = s_->props;
  // Stored directly, without change notices; ReadWriteIncrement is untouched.
  ReadOne([&] { p.directory_run = bag.ReadProperty("DirectoryRun", Variant::FromString("")).AsString(); });
  ReadOne([&] { p.form_size_ratio = bag.ReadProperty("FormSizeRatio", Variant::FromString("0.75")).AsSingle(); });
  ReadOne([&] { p.icon = bag.ReadProperty("Icon", Variant()).AsPicture(); });
  ReadOne([&] { p.program_author = bag.ReadProperty("ProgramAuthor", Variant::FromString("")).AsString(); });
  ReadOne([&] { p.program_company = bag.ReadProperty("ProgramCompany", Variant::FromString("")).AsString(); });
  ReadOne([&] {
    p.program_name = bag.ReadProperty("ProgramName", Variant::FromString(detail::kDefaultProgramName)).AsString();
  });
  ReadOne([&] { p.registry_app = bag.ReadProperty("RegistryApp", Variant::FromString("")).AsString(); });
  ReadOne([&] { p.registry_backup_file = bag.ReadProperty("RegistryBackupFile", Variant::FromString("")).AsString(); });
  ReadOne([&] {
    p.registry_backup_load = bag.ReadProperty("RegistryBackupLoad", Variant::FromBoolean(kFalse)).AsBoolean();
  });
  ReadOne([&] { p.ftp_security = bag.ReadProperty("FTPSecurity", Variant::FromLong(0)).AsLong(); });
  ReadOne([&] { p.ftp_certificate_file = bag.ReadProperty("FTPCertificateFile", Variant::FromString("")).AsString(); });
  // A run-time property: every load starts it at 0 again.
  p.read_write_increment = 0;
}

void Tolva2011Register::WriteProperties(PropertyBag& bag) noexcept {
  if (!s_) return;
  const detail::Properties& p = s_->props;
  ReadOne([&] { bag.WriteProperty("DirectoryRun", Variant::FromString(p.directory_run), Variant::FromString("")); });
  ReadOne(
      [&] { bag.WriteProperty("FormSizeRatio", Variant::FromSingle(p.form_size_ratio), Variant::FromString("0.75")); });
  ReadOne([&] { bag.WriteProperty("Icon", p.icon ? Variant::FromPicture(p.icon) : Variant(), Variant()); });
  ReadOne([&] { bag.WriteProperty("ProgramAuthor", Variant::FromString(p.program_author), Variant::FromString("")); });
  ReadOne(
      [&] { bag.WriteProperty("ProgramCompany", Variant::FromString(p.program_company), Variant::FromString("")); });
  ReadOne([&] {
    bag.WriteProperty("ProgramName", Variant::FromString(p.program_name),
                      Variant::FromString(detail::kDefaultProgramName));
  });
  ReadOne([&] { bag.WriteProperty("RegistryApp", Variant::FromString(p.registry_app), Variant::FromString("")); });
  ReadOne([&] {
    bag.WriteProperty("RegistryBackupFile", Variant::FromString(p.registry_backup_file), Variant::FromString(""));
  });
  ReadOne([&] {
    bag.WriteProperty("RegistryBackupLoad", Variant::FromBoolean(p.registry_backup_load), Variant::FromBoolean(kFalse));
  });
  ReadOne([&] { bag.WriteProperty("FTPSecurity", Variant::FromLong(p.ftp_security), Variant::FromLong(0)); });
  ReadOne([&] {
    bag.WriteProperty("FTPCertificateFile", Variant::FromString(p.ftp_certificate_file), Variant::FromString(""));
  });
}

void Tolva2011Register::Resize() noexcept {
  // The picture sits at the top-left corner and the component takes its
  // size, so the component can't be sized otherwise.
  s_->control_width = kPictureExtentTwips;
  s_->control_height = kPictureExtentTwips;
}

}  // namespace tolva
