// SkinTest: the skin service with a data directory of its own and nobody's choice.
#pragma once

#include "host/suite/account/accountservice.h"
#include "host/suite/skin/skinservice.h"
#include "suite/kdrawhelper.h"
#include "tests/services/fixture.h"
#include "tests/services/rows.h"

#include <QApplication>

class SkinTest : public ServiceTest {
protected:
    explicit SkinTest(const QByteArray& profile = R"({"skin": {"directories": ["${DATA}/skins"]}})")
    {
        useProfile(profile);
        service.start();
    }
    ~SkinTest() override { service.shutDown(); }

    static KSkin* kskin()
    {
        return qApp->findChild<KSkin*>(QStringLiteral("novaoffice"), Qt::FindDirectChildrenOnly);
    }
    static bool use(const char* skin)
    {
        return kskin()->setUserUsingSkin(kskin()->getUserId(), QString::fromLatin1(skin), {});
    }
    static QString name() { return KDrawHelper::getCurrentSkinNameFromTheme(); }
    static QColor color(const char* name, const char* group = "CommonPalette")
    {
        return KDrawHelper::getColorFromTheme(QString::fromLatin1(group), QString::fromLatin1(name), {});
    }
    /// Makes a skin in the profile's folder.
    void makeSkin(const char* name, const QByteArray& theme, const QByteArray& facts = {}) const
    {
        const QByteArray folder = QByteArray("skins/") + name;
        QDir(path("")).mkpath(QString::fromLatin1(folder));
        const QByteArray usual =
            QByteArray(R"({"title": "T", "colorScheme": "light", "name": ")") + name + "\"}";
        write((folder + "/skin.json").constData(), facts.isEmpty() ? usual : facts);
        write((folder + "/theme.json").constData(), theme);
    }

    suite::SkinService& service = suite::SkinService::instance();
};
