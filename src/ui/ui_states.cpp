#include "ui/ui_states.h"

namespace kestavon {

UiStates::UiStates(AppModel& model)
    : m_shell(model)
    , m_status(model)
    , m_onboarding(model)
    , m_settings(model)
{
}

} // namespace kestavon
