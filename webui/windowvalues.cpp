#include "webui/windowvalues.h"

#include "suite/klitestyle.h"

#include <algorithm>
#include <iterator>

namespace jsapi {

WindowLength::operator int() const
{
    const double css = qBound(0.0, length, double { LargestMaximum });
    return static_cast<int>(qBound(0.0, KLiteStyle::dpiScaled(css), double { LargestMaximum }));
}

bool Argument<WindowLength>::read(ArgumentReader& reader)
{
    const KJSVariant& given = reader.next();
    return (isNumber(given.raw()) && Converter<double>::read(given, value.length) == Reading::Done)
        || reader.refuse(WrongParameters);
}

bool Argument<ConvertedString>::read(ArgumentReader& reader)
{
    value.string = convertToString(reader.next().raw()).value_or(QString());
    return true;
}

bool isSettableAttribute(std::int32_t attribute)
{
    // The first and the last of each group.
    constexpr std::pair<int, int> OfQt[] = {
        { Qt::WA_UnderMouse, Qt::WA_UnderMouse },
        { Qt::WA_LaidOut, Qt::WA_PaintOnScreen },
        { Qt::WA_Mapped, Qt::WA_Mapped },
        { Qt::WA_WState_Visible, Qt::WA_ForceDisabled },
        { Qt::WA_PendingMoveEvent, Qt::WA_SetCursor },
        { Qt::WA_Resized, Qt::WA_InvalidSize },
        { Qt::WA_OutsideWSRange, Qt::WA_GrabbedShortcut },
        { Qt::WA_SetWindowIcon, Qt::WA_SetWindowIcon },
        { Qt::WA_SetLayoutDirection, Qt::WA_SetLayoutDirection },
        { Qt::WA_WState_Created, Qt::WA_WState_ExplicitShowHide },
        { Qt::WA_KeyboardFocusChange, Qt::WA_KeyboardFocusChange },
        { Qt::WA_DropSiteRegistered, Qt::WA_DropSiteRegistered },
        { Qt::WA_SetStyle, Qt::WA_SetLocale },
        { Qt::WA_StyledBackground, Qt::WA_StyledBackground },
        { Qt::WA_StyleSheet, Qt::WA_StyleSheet },
        { Qt::WA_SetWindowModality, Qt::WA_WState_WindowOpacitySet },
        { Qt::WA_WState_AcceptedTouchBeginEvent, Qt::WA_WState_AcceptedTouchBeginEvent },
        { Qt::WA_StyleSheetTarget, Qt::WA_StyleSheetTarget },
    };
    return attribute >= 0 && attribute < Qt::WA_AttributeCount
        && std::none_of(std::begin(OfQt), std::end(OfQt),
            [&](const auto& group) { return attribute >= group.first && attribute <= group.second; });
}

} // namespace jsapi
