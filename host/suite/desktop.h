// The user's desktop as far as pages reach it: other programs that open addresses.
#pragma once

#include <QObject>

namespace suite {

/// While it lives, addresses that are opened with QDesktopServices are only logged (category suite.desktop), if the profile
/// says so or there is no display. To be made after the application. [GUI thread]
class Desktop final : public QObject {
    Q_OBJECT

public:
    Desktop();
    ~Desktop() override;

private:
    Q_INVOKABLE void record(const QUrl& address);
};

} // namespace suite
