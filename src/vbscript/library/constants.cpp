#include "vbscript/library/families.h"

namespace tabrixdb::vbscript {

namespace {

Variant whole(std::int64_t value) {
    return Variant::integer(value);
}

Variant color(std::int32_t value) {
    return value;
}

} // namespace

std::span<const LibraryConstant> library_constants() {
    static const LibraryConstant constants[] = {
        // Characters
        {"vbCr", "\r"},
        {"vbLf", "\n"},
        {"vbCrLf", "\r\n"},
        {"vbNewLine", "\r\n"},
        {"vbTab", "\t"},
        {"vbVerticalTab", "\v"},
        {"vbFormFeed", "\f"},
        {"vbBack", "\b"},
        {"vbNullChar", std::string_view("\0", 1)},
        {"vbNullString", ""},
        // Truth, comparison, errors
        {"vbTrue", whole(-1)},
        {"vbFalse", whole(0)},
        {"vbUseDefault", whole(-2)},
        {"vbBinaryCompare", whole(0)},
        {"vbTextCompare", whole(1)},
        {"vbDatabaseCompare", whole(2)},
        {"vbObjectError", std::int32_t{-2147221504}},
        // Dates
        {"vbUseSystem", whole(0)},
        {"vbUseSystemDayOfWeek", whole(0)},
        {"vbSunday", whole(1)},
        {"vbMonday", whole(2)},
        {"vbTuesday", whole(3)},
        {"vbWednesday", whole(4)},
        {"vbThursday", whole(5)},
        {"vbFriday", whole(6)},
        {"vbSaturday", whole(7)},
        {"vbFirstJan1", whole(1)},
        {"vbFirstFourDays", whole(2)},
        {"vbFirstFullWeek", whole(3)},
        {"vbGeneralDate", whole(0)},
        {"vbLongDate", whole(1)},
        {"vbShortDate", whole(2)},
        {"vbLongTime", whole(3)},
        {"vbShortTime", whole(4)},
        // Types, as VarType reports them
        {"vbEmpty", whole(0)},
        {"vbNull", whole(1)},
        {"vbInteger", whole(2)},
        {"vbLong", whole(3)},
        {"vbSingle", whole(4)},
        {"vbDouble", whole(5)},
        {"vbCurrency", whole(6)},
        {"vbDate", whole(7)},
        {"vbString", whole(8)},
        {"vbObject", whole(9)},
        {"vbError", whole(10)},
        {"vbBoolean", whole(11)},
        {"vbVariant", whole(12)},
        {"vbDataObject", whole(13)},
        {"vbDecimal", whole(14)},
        {"vbByte", whole(17)},
        {"vbArray", whole(8192)},
        // Colours
        {"vbBlack", color(0x000000)},
        {"vbRed", color(0x0000FF)},
        {"vbGreen", color(0x00FF00)},
        {"vbYellow", color(0x00FFFF)},
        {"vbBlue", color(0xFF0000)},
        {"vbMagenta", color(0xFF00FF)},
        {"vbCyan", color(0xFFFF00)},
        {"vbWhite", color(0xFFFFFF)},
        // Message boxes, which no page shows but scripts name
        {"vbOKOnly", whole(0)},
        {"vbOKCancel", whole(1)},
        {"vbAbortRetryIgnore", whole(2)},
        {"vbYesNoCancel", whole(3)},
        {"vbYesNo", whole(4)},
        {"vbRetryCancel", whole(5)},
        {"vbCritical", whole(16)},
        {"vbQuestion", whole(32)},
        {"vbExclamation", whole(48)},
        {"vbInformation", whole(64)},
        {"vbDefaultButton1", whole(0)},
        {"vbDefaultButton2", whole(256)},
        {"vbDefaultButton3", whole(512)},
        {"vbDefaultButton4", whole(768)},
        {"vbApplicationModal", whole(0)},
        {"vbSystemModal", whole(4096)},
        {"vbMsgBoxHelpButton", whole(16384)},
        {"vbMsgBoxSetForeground", whole(65536)},
        {"vbMsgBoxRight", whole(524288)},
        {"vbMsgBoxRtlReading", whole(1048576)},
        {"vbOK", whole(1)},
        {"vbCancel", whole(2)},
        {"vbAbort", whole(3)},
        {"vbRetry", whole(4)},
        {"vbIgnore", whole(5)},
        {"vbYes", whole(6)},
        {"vbNo", whole(7)},
    };
    return constants;
}

} // namespace tabrixdb::vbscript
