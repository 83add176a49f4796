#include "ui/widgets/confirmation.h"

#include "ui/widgets/display_text.h"

#include <utility>

namespace kestavon {

ConfirmationTexts textsOf(const Question& question)
{
    return {
        .title = displayText(question.title),
        .message = displayText(question.message),
        .action = displayText(question.action),
        .destructive = question.destructive,
    };
}

void Confirmation::ask(
    ConfirmationTexts texts, std::function<void()> deed, std::function<void()> otherDeed)
{
    if (asking() || !deed)
        return;
    m_texts = std::move(texts);
    m_deed = std::move(deed);
    m_otherDeed = std::move(otherDeed);
    Q_EMIT askingChanged();
}

void Confirmation::reword(ConfirmationTexts texts)
{
    if (!asking())
        return;
    m_texts = std::move(texts);
    Q_EMIT askingChanged();
}

void Confirmation::confirm()
{
    answer(m_deed);
}

void Confirmation::confirmAlternative()
{
    answer(m_otherDeed);
}

void Confirmation::answer(std::function<void()> deed)
{
    cancel();
    if (deed)
        deed();
}

void Confirmation::cancel()
{
    m_otherDeed = nullptr;
    if (std::exchange(m_deed, nullptr))
        Q_EMIT askingChanged();
}

void Confirmation::setErrorMessage(const QString& message)
{
    if (message == m_errorMessage)
        return;
    m_errorMessage = message;
    Q_EMIT errorMessageChanged();
}

} // namespace kestavon
