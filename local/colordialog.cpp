#include "local/colordialog.h"

#include <QColorDialog>
#include <QCoreApplication>
#include <algorithm>

namespace jsapi {

namespace {

/// An invalid colour for what is none.
QColor readColor(const QString& string)
{
    const auto isDigit = [](QChar character) {
        const ushort c = character.unicode();
        return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
    };
    const bool isRgb = string.startsWith(QLatin1Char('#')) && (string.size() == 4 || string.size() == 7)
        && std::all_of(string.begin() + 1, string.end(), isDigit);
    return isRgb ? QColor(string) : QColor();
}

class KColorDialogRequest final : public KColorRequest {
public:
    KColorDialogRequest(
        std::unique_ptr<DialogTurn> turn, const ColorCallback& callback, const ColorOptions& options)
        : KColorRequest(std::move(turn), callback)
        , m_dialog(new QColorDialog(this->turn().owner()))
        , m_hasAlpha(options.alpha)
    {
        m_dialog->setWindowTitle(options.title.left(MaxTitle));
        m_dialog->setOption(QColorDialog::ShowAlphaChannel, m_hasAlpha);
        if (!options.color.isEmpty())
            m_dialog->setCurrentColor(readColor(options.color));
        connect(m_dialog, &QDialog::finished, this, [this](int result) {
            finish(result == QDialog::Accepted ? m_dialog->currentColor() : QColor(), m_hasAlpha);
        });
        connect(m_dialog, &QObject::destroyed, this, [this] { finish({}); });
    }
    ~KColorDialogRequest() override { KColorDialogRequest::close(); }

    static void show(std::unique_ptr<KColorDialogRequest> request)
    {
        const QPointer<QColorDialog> dialog = request->m_dialog;
        begin(std::move(request));
        dialog->open();
    }

private:
    void close() override
    {
        if (m_dialog && QCoreApplication::instance()) {
            m_dialog->hide();
            m_dialog->deleteLater();
        }
        m_dialog = nullptr;
    }

    QPointer<QColorDialog> m_dialog;
    bool m_hasAlpha;
};

} // namespace

Answer<bool> pickColor(const JSContextEnv& page, const ColorOptions& options, const ColorCallback& callback)
{
    if (!options.color.isEmpty() && !readColor(options.color).isValid())
        return WrongParameters;
    auto turn = std::make_unique<DialogTurn>(page);
    if (!*turn)
        return false;
    KColorDialogRequest::show(std::make_unique<KColorDialogRequest>(std::move(turn), callback, options));
    return true;
}

} // namespace jsapi
