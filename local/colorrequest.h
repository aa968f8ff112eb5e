// A colour that the user picks for a page, which goes on meanwhile.
#pragma once

#include "local/filedialogs.h"

#include <QColor>
#include <QTimer>
#include <memory>

namespace jsapi {

struct PickedColor {
    bool accepted;
    std::optional<QString> color;
    std::optional<double> alpha;
    static constexpr auto fields()
    {
        using Self = PickedColor;
        return std::tuple(property("accepted", &Self::accepted, "whether the user has picked a colour"),
            property("color", &Self::color, "the colour, `#rrggbb` in small letters, if there is one"),
            property("alpha", &Self::alpha, "its opacity from 0 to 1, if the page has asked for it"));
    }
};

using ColorCallback = RequiredCallback<PickedColor>;

/// One colour on its way, from the call until the function has been called, once, with what has become of it: also when the
/// page or the application ends before the user has. Owns itself; it has the page's turn for a dialog. [GUI thread]
class KColorRequest : public QObject {
    Q_OBJECT

public:
    ~KColorRequest() override;

protected:
    KColorRequest(std::unique_ptr<DialogTurn> turn, ColorCallback callback);

    /// Leaves the request to itself.
    static void begin(std::unique_ptr<KColorRequest> request);

    const DialogTurn& turn() const { return *m_turn; }
    /// Ends the request; what comes later does nothing. An invalid colour is none.
    void finish(const QColor& color, bool withAlpha = false);
    /// Takes away what the user sees. Called once, before the function.
    virtual void close() = 0;

private:
    std::unique_ptr<DialogTurn> m_turn;
    ColorCallback m_callback;
    QTimer m_watch;
    bool m_hasFinished = false;

public Q_SLOTS:
    // For timers and the application.
    void cancel();
    void lookAtPage();
};

} // namespace jsapi
