#include "suite/kcloudfiledialog.h"

#include "host/suite/dialogs/cloudwindow.h"
#include "host/suite/dialogs/dialoganswers.h"
#include "host/suite/dialogs/modal.h"

#include <utility>

namespace {

class CloudFileDialog final : public IKCloudFileDialog {
public:
    explicit CloudFileDialog(bool open)
        : m_open(open)
    {
    }

    void SetOption(const QString& key, const QVariant& value) override { m_options.set(key, value); }

    bool Exec(QWidget* owner) override
    {
        if (std::exchange(m_used, true))
            return false;
        return dialogs::areAnswered() ? takeAnswer() : show(owner);
    }

    QStringList Files() const override { return m_choice.files; }
    QVariant Value(const QString& key) const override { return m_choice.values.value(key); }
    void Destroy() override { delete this; }

private:
    bool takeAnswer()
    {
        const auto answer = dialogs::takeAnswer(profile::DialogKind::Cloud);
        if (!answer || !answer->accept)
            return false;
        m_choice = { answer->files, answer->values };
        if (!m_choice.files.isEmpty() || !m_choice.values.isEmpty())
            return true;
        dialogs::warn(
            QStringLiteral("the cloud file dialog is cancelled: its answer has neither \"files\" nor "
                           "\"values\"; add them in dialogs.answers of the profile"));
        return false;
    }

    bool show(QWidget* owner)
    {
        const QPointer<suite::CloudFileWindow> window(new suite::CloudFileWindow(m_open, m_options, owner));
        const bool accepted = dialogs::run(window);
        if (accepted)
            m_choice = window->choice();
        delete window;
        return accepted;
    }

    const bool m_open;
    bool m_used = false;
    suite::CloudOptions m_options;
    suite::CloudChoice m_choice;
};

} // namespace

IKCloudFileDialog* CreateCloudFileDialog(bool open)
{
    return profile::serviceOn(QStringLiteral("cloudFileDialog")) ? new CloudFileDialog(open) : nullptr;
}
