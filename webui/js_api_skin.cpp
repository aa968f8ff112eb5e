#include "webui/js_api_skin.h"

#include "suite/kdrawhelper.h"
#include "suite/kfilefilter.h"
#include "suite/klitestyle.h"
#include "suite/kskinimageschemehandler.h"
#include "webui/js_api_vieweventhandle.h"

#include <QCoreApplication>
#include <algorithm>

namespace jsapi {

namespace {

constexpr Failure EmptySkinName { ErrorCode::BadArgument, "empty skin name param" };
constexpr Failure NoSkinService { ErrorCode::OperationFailed, "skin is nullptr" };
constexpr Failure SwitchFailed { ErrorCode::OperationFailed, "switch skin failed" };
constexpr Failure EmptyConfig { ErrorCode::BadArgument, "empty config json obj" };
constexpr Failure NoFileFilter { ErrorCode::OperationFailed, "empty fileFilter" };
constexpr Failure NoFileTypes { ErrorCode::BadArgument, "empty fileIdentifyList" };

constexpr std::int32_t UsualIconSize = 16;
constexpr std::int32_t FileIconSize = 32;
constexpr std::int32_t LargestIconSize = 1024;

} // namespace

template <> struct Argument<KFileFilter> : ServiceArgument<KFileFilter, KFileFilter::instance, NoFileFilter> {
};

struct KJsApiSkin::ValueNames {
    std::vector<QString> config;
    static constexpr auto fields()
    {
        return strictly(std::tuple(required("config", &ValueNames::config,
            "the names of values, as `group/name`, or `name` for a value of the group `CommonPalette` or else of "
            "`CommonThemePalette`",
            EmptyConfig, EmptyConfig)));
    }
};

struct KJsApiSkin::FileTypes {
    std::vector<QString> fileIdentify;
    bool retrieveFullExtList = false;
    std::variant<bool, QString> all = false;
    bool wantsAll() const
    {
        const QString* string = std::get_if<QString>(&all);
        return string ? string->compare(QLatin1String("true"), Qt::CaseInsensitive) == 0
                      : std::get<bool>(all);
    }
    static constexpr auto fields()
    {
        using Self = FileTypes;
        return std::tuple(
            required("fileIdentify", &Self::fileIdentify,
                "types of files, each as one of its extensions without the dot", NoFileTypes, NoFileTypes),
            optional("retrieveFullExtList", &Self::retrieveFullExtList, "list all extensions of each type"),
            optional("all", &Self::all,
                "`true`, as a string in any case: an icon that a type shares with others counts, too"));
    }
};

struct KJsApiSkin::FileTypeIcon {
    bool hasIcon;
    QString name;
    QString icon;
    std::optional<QStringList> extList;
    static constexpr auto fields()
    {
        using Self = FileTypeIcon;
        return std::tuple(property("hasIcon", &Self::hasIcon, "whether the theme has an icon for the type"),
            property("name", &Self::name,
                "the name of that icon, or of the one for unknown files, for `getSkinIconPathInfo`"),
            property(
                "icon", &Self::icon, "its address, at 32 by 32 CSS pixels; empty when there is no such icon"),
            property("extList", &Self::extList,
                "the extensions of the type, in lower case, when they were asked for"));
    }
};

struct KJsApiSkin::IconRequest {
    QString name;
    std::int32_t width = UsualIconSize;
    std::int32_t height = UsualIconSize;
    QString themeArea;
    static constexpr auto fields()
    {
        using Self = IconRequest;
        return std::tuple(required("name", &Self::name, "the name of the icon"),
            optional("width", &Self::width, "in CSS pixels, 1 to 1024"),
            optional("height", &Self::height, "in CSS pixels, 1 to 1024"),
            optional("themeArea", &Self::themeArea,
                "the part of the theme in whose colours it is painted; without it `defaultThemeArea`"));
    }
};

struct KJsApiSkin::Icons {
    std::vector<IconRequest> icons;
    QString defaultThemeArea;
    static constexpr auto fields()
    {
        return std::tuple(required("icons", &Icons::icons, "what is wanted"),
            optional("defaultThemeArea", &Icons::defaultThemeArea,
                "the part of the theme for icons that name none"));
    }
};

struct KJsApiSkin::Icon {
    QString name;
    QString icon;
    std::int32_t width = 0;
    std::int32_t height = 0;
    static constexpr auto fields()
    {
        return std::tuple(property("name", &Icon::name, "as it was given"),
            property("icon", &Icon::icon,
                "the address of the image, which another skin makes another one; empty when there is no such icon"),
            property("width", &Icon::width, "the width of the image, in CSS pixels"),
            property("height", &Icon::height, "the height of the image, in CSS pixels"));
    }
};

const MemberList& KJsApiSkin::members()
{
    using Self = KJsApiSkin;
    static const MemberList list = MemberList { "The visual theme, its values and its changes.",
        {
            listeners<Self, SkinChangeEvent>(
                u"addSkinChangeListener", u"removeSkinChangeListener", Category::None),
            member<&Self::getCurrentSkinName>(u"getCurrentSkinName", Category::Usual, Type::JsValue,
                "Returns the name of the skin; an empty string when the suite has none."),
            member<&Self::switchSkin>(u"switchSkin", Category::Usual, Type::JsValue,
                { { Type::String, "name", "its name" } },
                "Uses another skin for the user. The theme has changed when this returns.",
                { &EmptySkinName, &NoSkinService, &SwitchFailed }),
            member<&Self::getSkinHintConfig>(u"getSkinHintConfig", Category::None, Type::JsValue,
                { Type::JsValue },
                "Returns hints of the theme by their names: lengths and other integers. One that it does not have "
                "is 0."),
            member<&Self::getSkinGradientConfig>(u"getSkinGradientConfig", Category::None, Type::JsValue,
                { Type::JsValue },
                "Returns gradients of the theme by their names. One that it does not have is a `NoGradient` "
                "without stops."),
            member<&Self::getSkinColorConfig>(u"getSkinColorConfig", Category::None, Type::JsValue,
                { Type::JsValue },
                "Returns colours of the theme by their names, as `rgba(red,green,blue,alpha)`. One that it does not "
                "have is `rgba(0,0,0,0)`."),
            member<&Self::getSkinConfig>(u"getSkinConfig", Category::None, Type::JsValue, { Type::JsValue },
                "Returns values of the theme, and of the file `custom.kuip` of the skin's plugin, by their names: "
                "a colour or a gradient for what begins as one, anything else as it is. In place of a name a "
                "colour or a `linear-gradient(...)` of CSS may stand. What begins as one and is none is "
                "transparent, or a gradient without stops; a name that is not known has an empty string."),
            member<&Self::getFileTypeIconInfo>(u"getFileTypeIconInfo", Category::None, Type::JsValue,
                { Type::JsValue }, "Returns, for each type of files, which icon the theme has for it."),
            member<&Self::getSkinIconPathInfo>(u"getSkinIconPathInfo", Category::None, Type::JsValue,
                { Type::JsValue },
                "Returns the addresses of icons, in the order of the request, in the colours of the theme. Of the "
                "sizes that an icon has it is the smallest that is large enough on this screen, or else the "
                "largest."),
        } }.withEvents(SkinChangeEvent);
    return list;
}

void KJsApiSkin::prepareEvents()
{
    if (!QCoreApplication::instance())
        return;
    if (!m_handle)
        m_handle = std::make_unique<KSkinEventHandle>(*this, [this] { m_values.clear(); });
    m_handle->follow();
}

void KJsApiSkin::prepareValues()
{
    prepareEvents();
    if (!m_handle || !m_handle->isFollowing())
        m_values.clear();
    m_values.useSkin(KDrawHelper::getCurrentSkinNameFromTheme());
}

Answer<QString> KJsApiSkin::getCurrentSkinName()
{
    return KDrawHelper::getCurrentSkinNameFromTheme();
}

Answer<void> KJsApiSkin::switchSkin(const QString& name)
{
    if (name.isEmpty())
        return EmptySkinName;
    // A window that is painted anew, and any listener, may end the service.
    const QPointer<KSkin> skin(findSkinService());
    if (!skin)
        return NoSkinService;
    const QString user = skin->getUserId();
    if (!skin || !skin->setUserUsingSkin(user, name, {}))
        return SwitchFailed;
    if (skin)
        skin->addCurrentUserSkinHistory(name);
    return {};
}

namespace {

/// By each name what `read` has for it.
template <typename Read> auto readValues(const std::vector<QString>& names, Read read)
{
    QMap<QString, decltype(read(QString()))> values;
    for (const QString& name : names)
        values.insert(name, read(name));
    return values;
}

} // namespace

Answer<QMap<QString, std::int32_t>> KJsApiSkin::getSkinHintConfig(const ValueNames& names)
{
    prepareValues();
    return readValues(names.config, [this](const QString& name) { return m_values.hint(name); });
}

Answer<QMap<QString, SkinGradient>> KJsApiSkin::getSkinGradientConfig(const ValueNames& names)
{
    prepareValues();
    return readValues(names.config, [this](const QString& name) { return m_values.gradient(name); });
}

Answer<QMap<QString, QString>> KJsApiSkin::getSkinColorConfig(const ValueNames& names)
{
    prepareValues();
    return readValues(names.config, [this](const QString& name) { return m_values.color(name); });
}

Answer<QMap<QString, std::variant<QString, SkinGradient>>> KJsApiSkin::getSkinConfig(const ValueNames& names)
{
    const KSkinConfig config;
    return readValues(names.config, [&](const QString& name) { return config.value(name); });
}

namespace {

bool holds(const QSize& size, const QSize& wanted)
{
    return size.width() >= wanted.width() && size.height() >= wanted.height();
}

/// The smallest size that is large enough, or else the largest; an icon without sizes has every one.
QSize chooseSize(QList<QSize> sizes, const QSize& wanted)
{
    std::sort(sizes.begin(), sizes.end(), [](const QSize& left, const QSize& right) {
        return qint64(left.width()) * left.height() < qint64(right.width()) * right.height();
    });
    const auto found =
        std::find_if(sizes.cbegin(), sizes.cend(), [&](const QSize& size) { return holds(size, wanted); });
    return sizes.isEmpty() ? wanted : found != sizes.cend() ? *found : sizes.last();
}

/// An icon in the colours of an area, for a size in CSS pixels.
KJsApiSkin::Icon findIcon(
    const QString& name, const QString& themeArea, std::int32_t width, std::int32_t height)
{
    KJsApiSkin::Icon found { name, QString(), 0, 0 };
    const QIcon icon = KDrawHelper::loadIcon(name);
    const QString bound = icon.isNull() ? QString() : KDrawHelper::bindIconStyleColor(name, themeArea);
    if (bound.isEmpty())
        return found;
    const QSize size = chooseSize(icon.availableSizes(),
        KLiteStyle::dpiScaledSize(qBound(1, width, LargestIconSize), qBound(1, height, LargestIconSize)));
    found.icon = heapString("%1://%2?width=%3&height=%4")
                     .arg(KSkinImageSchemeHandler::schemeName(), bound, QString::number(size.width()),
                         QString::number(size.height()));
    found.width = toCssPixels(size.width());
    found.height = toCssPixels(size.height());
    return found;
}

} // namespace

Answer<QMap<QString, KJsApiSkin::FileTypeIcon>> KJsApiSkin::getFileTypeIconInfo(
    const KFileFilter& filter, const FileTypes& types)
{
    if (types.fileIdentify.empty())
        return NoFileTypes;
    const QString skin = KDrawHelper::getCurrentSkinNameFromTheme();
    return readValues(types.fileIdentify, [&](const QString& type) {
        const QString name = filter.fileTypeIcon(type);
        FileTypeIcon info { filter.hasFileTypeIcon(type, skin, types.wantsAll()), name,
            findIcon(name, QString(), FileIconSize, FileIconSize).icon, {} };
        if (types.retrieveFullExtList)
            info.extList = filter.extensions(type);
        return info;
    });
}

Answer<std::vector<KJsApiSkin::Icon>> KJsApiSkin::getSkinIconPathInfo(const Icons& icons)
{
    std::vector<Icon> found;
    for (const IconRequest& wanted : icons.icons) {
        found.push_back(
            findIcon(wanted.name, wanted.themeArea.isEmpty() ? icons.defaultThemeArea : wanted.themeArea,
                wanted.width, wanted.height));
    }
    return found;
}

} // namespace jsapi
