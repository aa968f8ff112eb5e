// The suite's own file dialog, as a window or as part of another one. Unlike Qt's it may be destroyed with
// its owner while it shows a message box.
#pragma once

#include <QFileDialog>
#include <functional>

namespace suite {

class FileDialog final : public QFileDialog {
public:
    explicit FileDialog(QWidget* owner, const QString& caption = {});

    /// Shows a directory, or selects a file. An empty path changes nothing.
    void openAt(const QString& path);
    /// Called before files are accepted. Returns an error to be shown, after which the dialog stays open, or
    /// an empty string.
    void setValidator(std::function<QString(const QStringList& files)> validate)
    {
        m_validate = std::move(validate);
    }
    /// Whether the user must confirm that an existing file is replaced; true by default.
    void setConfirmsOverwrite(bool confirms) { m_confirmsOverwrite = confirms; }
    /// Makes it part of another window: instead of hiding itself it calls `ended`.
    void embed(std::function<void(int result)> ended);

    void accept() override;

protected:
    void done(int result) override;

private:
    bool containsFolder(const QStringList& files) const;
    bool confirm(const QStringList& files);

    std::function<QString(const QStringList&)> m_validate;
    std::function<void(int)> m_ended;
    bool m_confirmsOverwrite = true;
    bool m_accepting = false;
};

} // namespace suite
