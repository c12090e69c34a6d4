// Form positions: a host form's place and size kept in its own section of
// the application settings, and sized by FormSizeRatio on first use.
// Kept in a file of its own: it is the only part of the family that needs
// the screen measures.
#include <string>

#include "component/component_state.h"
#include "settings/setting_text.h"
#include "tolva/tolva2011register.h"

namespace tolva {

namespace {

constexpr Integer kSizableBorder = 2;
constexpr Integer kNormalWindow = 0;

bool IsSizable(const Form& form) {
  return form.BorderStyle() == kSizableBorder;
}
Long AsLong(Single twips) {
  return settings::RoundToLong(static_cast<Double>(twips));
}

}  // namespace

void Tolva2011Register::RegistryGetPosition(Form& FormToPosition, const std::string& Section) noexcept {
  detail::GuardedVoid([&] {
    if (s_->props.registry_app.empty()) return;
    Form& form = FormToPosition;
    const Single screen_width = static_cast<Single>(ScreenWidth());
    const Single screen_height = static_cast<Single>(ScreenHeight());
    if (RegistryGetSetting(Section, "FormInitialise", "F") == "F") {
      if (IsSizable(form)) {
        const Single ratio = s_->props.form_size_ratio;
        form.Width(ratio * screen_width);
        form.Height(ratio * screen_height);
      }
      RegistrySaveSetting(Section, "FormInitialise", "T");
    }
    const Long centred_left = settings::RoundToLong((static_cast<Double>(screen_width) - form.Width()) / 2);
    const Long centred_top = settings::RoundToLong((static_cast<Double>(screen_height) - form.Height()) / 2);
    // No clamping to the screen: a stored position is applied as stored.
    form.Left(static_cast<Single>(RegistryGetSettingLong(Section, "Left", centred_left)));
    form.Top(static_cast<Single>(RegistryGetSettingLong(Section, "Top", centred_top)));
    settings::SettingsState& placement = s_->settings;
    if (IsSizable(form)) {
      form.Height(static_cast<Single>(RegistryGetSettingLong(Section, "Height", AsLong(form.Height()))));
      form.Width(static_cast<Single>(RegistryGetSettingLong(Section, "Width", AsLong(form.Width()))));
      placement.placement_height = AsLong(form.Height());
      placement.placement_width = AsLong(form.Width());
    }
    placement.placement_left = AsLong(form.Left());
    placement.placement_top = AsLong(form.Top());
  });
}

void Tolva2011Register::RegistrySavePosition(Form& FormToPosition, const std::string& Section) noexcept {
  detail::GuardedVoid([&] {
    if (s_->props.registry_app.empty()) return;
    Form& form = FormToPosition;
    const bool sizable = IsSizable(form);
    if (form.WindowState() == kNormalWindow) {
      RegistrySaveSettingLong(Section, "Top", AsLong(form.Top()));
      RegistrySaveSettingLong(Section, "Left", AsLong(form.Left()));
      if (sizable) {
        RegistrySaveSettingLong(Section, "Height", AsLong(form.Height()));
        RegistrySaveSettingLong(Section, "Width", AsLong(form.Width()));
      }
      return;
    }
    // Minimised or maximised: keep the normal placement remembered when the
    // form was last positioned, not the current size. The state itself is not stored.
    const settings::SettingsState& placement = s_->settings;
    RegistrySaveSettingLong(Section, "Top", placement.placement_top);
    RegistrySaveSettingLong(Section, "Left", placement.placement_left);
    if (sizable) {
      RegistrySaveSettingLong(Section, "Height", placement.placement_height);
      RegistrySaveSettingLong(Section, "Width", placement.placement_width);
    }
  });
}

}  // namespace tolva
