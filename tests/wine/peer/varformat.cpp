// A Windows program for Wine: formats values with the platform's VarFormat. Reads lines of
//
//   VARTYPE tab VALUE tab FORMAT
//
// in UTF-8, with VALUE the text of a BSTR or the eight bytes of any other value as a hexadecimal number, and
// writes for each the HRESULT in hexadecimal, a tab and the formatted text. Weeks start on Sunday, the first
// one is that of 1 January.
#include <iostream>
#include <string>

#include <fcntl.h>
#include <io.h>
#include <stdio.h>
#include <windows.h>

static std::wstring wide(const std::string& text) {
    const int bytes = static_cast<int>(text.size());
    std::wstring out(text.size(), L'\0');
    out.resize(MultiByteToWideChar(CP_UTF8, 0, text.data(), bytes, out.data(), bytes));
    return out;
}

static std::string utf8(BSTR text) {
    const int units = static_cast<int>(SysStringLen(text));
    std::string out(3 * static_cast<std::size_t>(units), '\0');
    out.resize(WideCharToMultiByte(CP_UTF8, 0, text, units, out.data(), 3 * units, nullptr, nullptr));
    return out;
}

static VARIANT variant_of(VARTYPE type, const std::string& text) {
    VARIANT value;
    VariantInit(&value);
    value.vt = type;
    if (type == VT_BSTR) {
        const std::wstring units = wide(text);
        value.bstrVal = SysAllocStringLen(units.data(), static_cast<UINT>(units.size()));
    } else {
        value.ullVal = std::stoull(text, nullptr, 16);
    }
    return value;
}

int main() {
    _setmode(_fileno(stdin), _O_BINARY);
    _setmode(_fileno(stdout), _O_BINARY);
    for (std::string type, text, format; std::getline(std::cin, type, '\t') &&
                                         std::getline(std::cin, text, '\t') &&
                                         std::getline(std::cin, format);) {
        VARIANT value = variant_of(static_cast<VARTYPE>(std::stoul(type)), text);
        BSTR formatted = nullptr;
        const HRESULT result = VarFormat(&value, wide(format).data(), 1, 1, 0, &formatted);
        std::cout << std::hex << static_cast<unsigned long>(result) << '\t' << utf8(formatted) << std::endl;
        SysFreeString(formatted);
        VariantClear(&value);
    }
}
