#include "local/js_api_utils.h"

#include "krt/dirs.h"
#include "local/account.h"
#include "local/clipboard.h"
#include "local/launch.h"
#include "suite/kjsapiwebwidget.h"
#include "suite/kviewpage.h"

#include <QClipboard>
#include <QCryptographicHash>
#include <QDir>
#include <QMessageAuthenticationCode>
#include <QScreen>

namespace jsapi {

namespace {

/// What the token is computed of: the server knows it.
constexpr char CsrfMessage[] = "csrf";

} // namespace

struct KJsApiUtils::ImageOptions {
    QString path;
    std::optional<Bytes> bytes;
    static constexpr auto fields()
    {
        using Self = ImageOptions;
        return strictly(std::tuple(
            optional("path", &Self::path,
                "a file of the format PNG, JPEG, GIF, BMP or WebP, with at most 16,384 pixels a side and 64 "
                "million in all"),
            optional("bytes", &Self::bytes, "what would be in such a file, in place of `path`")));
    }
};

struct KJsApiUtils::PictureOptions {
    QString title;
    QString dir;
    bool multiple = false;
    static constexpr auto fields()
    {
        using Self = PictureOptions;
        return strictly(std::tuple(optional("title", &Self::title, "the dialog's title"),
            optional("dir", &Self::dir, "the directory to begin in"),
            optional("multiple", &Self::multiple, "let the user choose several")));
    }
};

struct KJsApiUtils::ProgramOptions {
    std::string program;
    std::vector<std::string> arguments;
    static constexpr auto fields()
    {
        using Self = ProgramOptions;
        return strictly(
            std::tuple(required("program", &Self::program, "its absolute path, without `..` and `//`"),
                optional("arguments", &Self::arguments, "its arguments; none may be empty")));
    }
};

struct KJsApiUtils::ParamOptions {
    QString key;
    static constexpr auto fields()
    {
        return strictly(std::tuple(optional("key", &ParamOptions::key, "one of the values")));
    }
};

const MemberList& KJsApiUtils::members()
{
    using Self = KJsApiUtils;
    static const MemberList list { "Clipboard, screens, colours and small helpers.",
        {
            member<&Self::setTextToClipboard>(u"setTextToClipboard", Category::Usual, Type::JsValue,
                { { Type::String, "text", "the text; an empty one empties the clipboard" } },
                "Puts a text on the clipboard. Where nothing else keeps the clipboard, it is empty when the "
                "suite has ended.",
                { &EmptyHandle }),
            member<&Self::getClipboardText>(u"getClipboardText", Category::Usual, Type::JsValue,
                "Returns the text on the clipboard, empty when there is none.", { &EmptyHandle }),
            member<&Self::setImageToClipboard>(u"setImageToClipboard", Category::Usual, Type::JsValue,
                { Type::JsValue },
                "Puts a picture on the clipboard, upright if the file says how it was taken.",
                { &EmptyHandle, &MissingParameters, &NoImageFile, &NotAnImage }),
            member<&Self::getPrimaryScreenGeometry>(u"getPrimaryScreenGeometry", Category::Usual,
                Type::JsValue, "Returns the primary screen. Lengths are in CSS pixels, cut to whole ones.",
                { &EmptyHandle }),
            member<&Self::getAllScreenGeometry>(u"getAllScreenGeometry", Category::Usual, Type::JsValue,
                "Returns all screens, the primary one first.", { &EmptyHandle }),
            member<&Self::getCurrentScreenGeometry>(u"getCurrentScreenGeometry", Category::Usual,
                Type::JsValue,
                "Returns the screen on which the page's window is, for the most part; of a page without a "
                "window the primary one.",
                { &EmptyHandle }),
            member<&Self::pickColor>(u"pickColor", Category::Usual, Type::JsValue,
                { { Type::JsValue, "options" },
                    { Type::Object, "callback", "called once, when the dialog has ended in any way" } },
                "Shows a dialog in which the user picks a colour, and returns at once whether it is shown: "
                "`false` while another dialog of the page is open. The function is called only if it is.",
                { &WrongParameters }),
            member<&Self::getPictureFilepath>(u"getPictureFilepath", Category::Usual, Type::JsValue,
                { Type::JsValue },
                "Has the user choose a picture, or several. Returns their paths, none when cancelled."),
            member<&Self::startDetach>(u"startDetach", Category::Usual, Type::Boolean, { Type::JsValue },
                "Starts a program that goes on without the suite, if the suite lets the page start this one. "
                "Returns whether it was started, without an envelope. No shell reads the arguments.",
                { &NotPermitted, &NoProgram, &TooManyLaunches }),
            member<&Self::getSnapperColor>(u"getSnapperColor", Category::Usual, Type::JsValue,
                { { Type::JsValue, "options" },
                    { Type::Object, "callback", "called once, when the user has picked or cancelled" } },
                "Shows an eyedropper over all screens, with which the user picks the colour of a pixel: a "
                "click picks, Escape, the other mouse buttons and a minute without the mouse cancel. Returns "
                "at once whether it is shown: `false` while another dialog of the page is open, and where "
                "there is no X11. The function is called only if it is.",
                { &WrongParameters }),
            member<&Self::getParamExtra>(u"getParamExtra", Category::Usual, Type::JsValue, { Type::JsValue },
                "Returns what whoever opened the page's window has passed along, as `paramExtra` of "
                "`WebviewMgr.create` or `Tools.openInnerUrl`: an object, `{}` without any; with `key` one "
                "of its values, undefined when there is none."),
            member<&Self::inBlackDownloadDir>(u"inBlackDownloadDir", Category::Usual, Type::JsValue,
                { { Type::String, "path", "an absolute path" } },
                "Returns whether the path is, or lies in, a directory that is closed to pages.",
                { &MissingParameters, &WrongParameters }),
            member<&Self::getCsrf>(u"getCsrf", Category::Usual, Type::JsValue,
                "Returns a token of the session of the signed-in user, by which the account's server knows "
                "that a request comes from the suite: HMAC-SHA256 of `csrf` with the session as the key, 64 "
                "lower-case hexadecimal digits. Another one after every login.",
                { &NoAccountSdk, &NotLoggedIn }),
        } };
    return list;
}

namespace {

/// Null without an application that has one.
QClipboard* findClipboard()
{
    return qobject_cast<QGuiApplication*>(QCoreApplication::instance()) ? QGuiApplication::clipboard()
                                                                        : nullptr;
}

const QScreen* findPrimaryScreen()
{
    return qobject_cast<QGuiApplication*>(QCoreApplication::instance()) ? QGuiApplication::primaryScreen()
                                                                        : nullptr;
}

} // namespace

Answer<void> KJsApiUtils::setTextToClipboard(const Demanded<QString>& text)
{
    QClipboard* clipboard = findClipboard();
    if (!clipboard)
        return EmptyHandle;
    if (text.value.isEmpty())
        clipboard->clear();
    else
        clipboard->setText(text.value);
    return {};
}

Answer<QString> KJsApiUtils::getClipboardText(const Permission<KPagePermission::ReadClipboard>&)
{
    const QClipboard* clipboard = findClipboard();
    if (!clipboard)
        return EmptyHandle;
    return clipboard->text();
}

Answer<void> KJsApiUtils::setImageToClipboard(const ImageOptions& options)
{
    QClipboard* clipboard = findClipboard();
    if (!clipboard)
        return EmptyHandle;
    if (options.path.isEmpty() && !options.bytes)
        return MissingParameters;
    if (!options.path.isEmpty() && options.bytes)
        return WrongParameters;
    Answer<QImage> image = options.bytes ? readImage(*options.bytes) : readImage(options.path);
    if (image.isRefused())
        return image.refusal();
    clipboard->setImage(image.value());
    return {};
}

Answer<ScreenGeometry> KJsApiUtils::getPrimaryScreenGeometry()
{
    const QScreen* screen = findPrimaryScreen();
    if (!screen)
        return EmptyHandle;
    return describeScreen(*screen);
}

Answer<std::vector<ScreenGeometry>> KJsApiUtils::getAllScreenGeometry()
{
    if (!findPrimaryScreen())
        return EmptyHandle;
    std::vector<ScreenGeometry> screens;
    for (const QScreen* screen : QGuiApplication::screens())
        screens.push_back(describeScreen(*screen));
    return screens;
}

Answer<ScreenGeometry> KJsApiUtils::getCurrentScreenGeometry(const JSContextEnv& page)
{
    const KJsApiWebWidget* widget = webWidgetOf(page);
    const QScreen* screen = widget ? widget->screen() : findPrimaryScreen();
    if (!screen)
        return EmptyHandle;
    return describeScreen(*screen);
}

Answer<bool> KJsApiUtils::pickColor(
    const JSContextEnv& page, const ColorOptions& options, const ColorCallback& callback)
{
    return jsapi::pickColor(page, options, callback);
}

Answer<QStringList> KJsApiUtils::getPictureFilepath(const JSContextEnv& page, const PictureOptions& options)
{
    const QString filter = heapString("Images (*.png *.jpg *.jpeg *.gif *.bmp *.webp *.svg)");
    QStringList paths = chooseFiles(page, { options.title, options.dir, filter },
        options.multiple ? QFileDialog::ExistingFiles : QFileDialog::ExistingFile);
    for (QString& path : paths)
        path = QDir::toNativeSeparators(path);
    return paths;
}

Answer<Plain<bool>> KJsApiUtils::startDetach(const JSContextEnv& page, const ProgramOptions& options)
{
    Answer<bool> started = launchProgram(page, QString::fromStdString(options.program), options.arguments);
    if (started.isRefused())
        return started.refusal();
    return Plain<bool> { started.value() };
}

Answer<bool> KJsApiUtils::getSnapperColor(const Permission<KPagePermission::ReadScreen>&,
    const JSContextEnv& page, const ScreenColorOptions& options, const ColorCallback& callback)
{
    return pickScreenColor(page, options, callback);
}

Answer<QVariant> KJsApiUtils::getParamExtra(const JSContextEnv& page, const ParamOptions& options)
{
    const KJsApiWebWidget* widget = webWidgetOf(page);
    const QVariantMap values =
        widget ? widget->property(KWebWidgetParamExtraProperty).toMap() : QVariantMap();
    return options.key.isEmpty() ? QVariant(values) : values.value(options.key);
}

Answer<bool> KJsApiUtils::inBlackDownloadDir(const QString& path)
{
    if (path.isEmpty())
        return MissingParameters;
    if (!QDir::isAbsolutePath(path))
        return WrongParameters;
    return krt::dirs::inBlackDownloadDir(path);
}

Answer<QString> KJsApiUtils::getCsrf(const Permission<KPagePermission::UseSession>&)
{
    const kacctoutsdk::IKAccount* account = findAccount();
    if (!account)
        return NoAccountSdk;
    const QByteArray session = account->novasid().toUtf8();
    if (!account->isLoggedIn() || session.isEmpty())
        return NotLoggedIn;
    return QString::fromLatin1(
        QMessageAuthenticationCode::hash(QByteArray(CsrfMessage), session, QCryptographicHash::Sha256)
            .toHex());
}

} // namespace jsapi
