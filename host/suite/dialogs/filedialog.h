// The suite's own file dialog, for a window of its own or as a part of another one. Unlike Qt's it survives
// that its owner goes while it asks the user something.
#pragma once

#include <QFileDialog>
#include <functional>

namespace suite {

class FileDialog final : public QFileDialog {
public:
    explicit FileDialog(QWidget* owner, const QString& caption = {});

    /// Begins in a directory, or with the file of this name; stays where it is for an empty path.
    void begin(const QString& path);
    /// Asked before the dialog lets go of what was chosen; a text is shown to the user, who goes on choosing.
    void setRefusal(std::function<QString(const QStringList& files)> refusal)
    {
        m_refusal = std::move(refusal);
    }
    /// Whether saving onto an existing file needs the user's consent; it does unless this is called.
    void setConfirmsOverwrite(bool confirms) { m_confirmsOverwrite = confirms; }
    /// Makes it a part of another window: it never hides itself, `ended` is called in place of that.
    void embed(std::function<void(int result)> ended);

    void accept() override;

protected:
    void done(int result) override;

private:
    bool entersFolder(const QStringList& files) const;
    bool goesOn(const QStringList& files);

    std::function<QString(const QStringList&)> m_refusal;
    std::function<void(int)> m_ended;
    bool m_confirmsOverwrite = true;
    bool m_accepting = false;
};

} // namespace suite
