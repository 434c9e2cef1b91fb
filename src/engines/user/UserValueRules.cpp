#include "engines/user/UserValueRules.h"

#include <algorithm>

#include "platform/Strings.h"

namespace orin {
namespace {

// The country codes a user's "c" attribute accepts, as one comma-separated list.
constexpr std::string_view kCountryCodes =
    "IS,IE,AZ,AE,AF,DZ,AR,AW,AO,AM,AL,AI,AG,AD,YE,IL,IT,IQ,IR,IN,ID,UG,UA,UZ,UY,EC,EG,EE,ET,ER,"
    "SV,AU,AT,OM,NL,AN,GH,CV,GY,KZ,QA,CA,GA,CM,GM,KH,GN,GW,CY,CU,GR,KI,KG,GT,GP,GU,KW,CK,GL,CX,"
    "GE,GD,HR,KY,KE,CI,CC,CR,KM,CO,CG,CD,SA,WS,ST,ZM,PM,SM,SL,DJ,GI,JM,SY,SG,ZW,CH,SE,SD,SJ,ES,"
    "SR,LK,SK,SI,SZ,SC,SN,KN,VC,SH,LC,SO,SB,TC,TH,TJ,TZ,CZ,TD,TN,CL,TV,DK,DE,TG,TK,DO,DM,TT,TM,"
    "TR,TO,NG,NR,NA,NU,NI,NE,NC,NZ,NP,NF,NO,BH,HT,PK,VA,PA,VU,BS,PG,BM,PW,PY,BB,HU,BD,PN,FJ,PH,"
    "FI,BT,BV,PR,FO,FK,BR,FR,FX,GF,PF,BG,BF,BN,BI,HM,VN,BJ,VE,BY,BZ,PE,BE,PL,BA,BW,BO,PT,HN,MH,"
    "YT,MK,MG,MW,ML,MT,MQ,MY,FM,MM,MX,MU,MR,MZ,MC,MV,MD,MA,MN,MS,YU,JO,LA,LV,LT,LI,LR,RO,LU,RW,"
    "LS,LB,RE,RU,WF,GB,IO,VG,LY,GQ,TW,KR,CF,MO,HK,CN,KP,TP,ZA,GS,AQ,JP,TF,US,AS,VI,UM,MP";

// Number of characters (code points) of UTF-8 text.
size_t CharCount(std::string_view text) {
    return static_cast<size_t>(std::count_if(text.begin(), text.end(), [](char c) {
        return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
    }));
}

// The first character of `text` as a lower-case ASCII letter, full-width letters narrowed;
// 0 when it is not a letter. `length` receives its length in bytes.
char FirstLetter(std::string_view text, size_t& length) {
    length = 0;
    if (text.empty()) return 0;
    unsigned char c = static_cast<unsigned char>(text[0]);
    if (c < 0x80) {
        length = 1;
        if (c >= 'A' && c <= 'Z') return static_cast<char>(c - 'A' + 'a');
        return c >= 'a' && c <= 'z' ? static_cast<char>(c) : 0;
    }
    // Full-width Latin letters: U+FF21..U+FF3A and U+FF41..U+FF5A, EF BC A1..BA and EF BD 81..9A.
    if (text.size() < 3 || c != 0xEF) return 0;
    unsigned char b1 = static_cast<unsigned char>(text[1]);
    unsigned char b2 = static_cast<unsigned char>(text[2]);
    length = 3;
    if (b1 == 0xBC && b2 >= 0xA1 && b2 <= 0xBA) return static_cast<char>('a' + (b2 - 0xA1));
    if (b1 == 0xBD && b2 >= 0x81 && b2 <= 0x9A) return static_cast<char>('a' + (b2 - 0x81));
    return 0;
}

// Searching from byte 3 is searching from the fourth character: when the third character takes
// more than one byte, those bytes are never a backslash.
constexpr size_t kFourthChar = 3;

}  // namespace

bool IsCountryCode(std::string_view code) {
    if (CharCount(code) != 2 || code.find(',') != std::string_view::npos) return false;
    std::string upper = ToUpperAscii(code);
    for (size_t i = 0; i + 2 <= kCountryCodes.size(); i += 3) {
        if (kCountryCodes.substr(i, 2) == upper) return true;
    }
    return false;
}

bool IsDriveSpec(std::string_view drive) {
    std::string text = Trim(drive);
    if (text.empty() || CharCount(text) != 2 || text.back() != ':') return false;
    size_t length = 0;
    char letter = FirstLetter(text, length);
    return letter >= 'c' && letter <= 'z';
}

bool IsUncPath(std::string_view path) {
    std::string text = Trim(path);
    return CharCount(text) >= 5 && text.starts_with("\\\\") &&
           text.find('\\', kFourthChar) != std::string::npos && text.back() != '\\';
}

bool IsLocalPath(std::string_view path) {
    std::string text = Trim(path);
    size_t length = 0;
    if (FirstLetter(text, length) == 0) return false;
    return text.substr(length, 2) == ":\\";
}

bool ParentOfUncPath(std::string_view path, std::string& parent) {
    parent.clear();
    if (!IsUncPath(path)) return false;
    std::string text = Trim(path);
    size_t separators = std::count(text.begin() + kFourthChar, text.end(), '\\');
    if (separators > 1) parent = text.substr(0, text.rfind('\\'));
    return true;
}

}  // namespace orin
