#include "caption_languages.h"

#include <array>

namespace tolvane {

namespace {

struct LanguageName {
    const char *code;
    const char *name;
};

// Two-letter codes of the older ISO 639 edition (IW, JI, IN, JW, MO and SH
// included) as caption lists have always named them; "Tegulu", "Sudanese"
// and "Sangro" are kept as users have seen them.
constexpr std::array kLanguageNames = {
    LanguageName{"AB", "Abkhazian"},
    LanguageName{"AA", "Afar"},
    LanguageName{"AF", "Afrikaans"},
    LanguageName{"SQ", "Albanian"},
    LanguageName{"AM", "Amharic"},
    LanguageName{"AR", "Arabic"},
    LanguageName{"HY", "Armenian"},
    LanguageName{"AS", "Assamese"},
    LanguageName{"AY", "Aymara"},
    LanguageName{"AZ", "Azerbaijani"},
    LanguageName{"BA", "Bashkir"},
    LanguageName{"EU", "Basque"},
    LanguageName{"BN", "Bengali"},
    LanguageName{"DZ", "Bhutani"},
    LanguageName{"BH", "Bihari"},
    LanguageName{"BI", "Bislama"},
    LanguageName{"BR", "Breton"},
    LanguageName{"BG", "Bulgarian"},
    LanguageName{"MY", "Burmese"},
    LanguageName{"BE", "Byelorussian"},
    LanguageName{"KM", "Cambodian"},
    LanguageName{"CA", "Catalan"},
    LanguageName{"ZH", "Chinese"},
    LanguageName{"CO", "Corsican"},
    LanguageName{"HR", "Croatian"},
    LanguageName{"CS", "Czech"},
    LanguageName{"DA", "Danish"},
    LanguageName{"NL", "Dutch"},
    LanguageName{"EN", "English"},
    LanguageName{"EO", "Esperanto"},
    LanguageName{"ET", "Estonian"},
    LanguageName{"FO", "Faeroese"},
    LanguageName{"FJ", "Fiji"},
    LanguageName{"FI", "Finnish"},
    LanguageName{"FR", "French"},
    LanguageName{"FY", "Frisian"},
    LanguageName{"GD", "Gaelic"},
    LanguageName{"GL", "Galician"},
    LanguageName{"KA", "Georgian"},
    LanguageName{"DE", "German"},
    LanguageName{"EL", "Greek"},
    LanguageName{"KL", "Greenlandic"},
    LanguageName{"GN", "Guarani"},
    LanguageName{"GU", "Gujarati"},
    LanguageName{"HA", "Hausa"},
    LanguageName{"IW", "Hebrew"},
    LanguageName{"HI", "Hindi"},
    LanguageName{"HU", "Hungarian"},
    LanguageName{"IS", "Icelandic"},
    LanguageName{"IN", "Indonesian"},
    LanguageName{"IA", "Interlingua"},
    LanguageName{"IE", "Interlingue"},
    LanguageName{"IK", "Inupiak"},
    LanguageName{"GA", "Irish"},
    LanguageName{"IT", "Italian"},
    LanguageName{"JA", "Japanese"},
    LanguageName{"JW", "Javanese"},
    LanguageName{"KN", "Kannada"},
    LanguageName{"KS", "Kashmiri"},
    LanguageName{"KK", "Kazakh"},
    LanguageName{"RW", "Kinyarwanda"},
    LanguageName{"KY", "Kirghiz"},
    LanguageName{"RN", "Kirundi"},
    LanguageName{"KO", "Korean"},
    LanguageName{"KU", "Kurdish"},
    LanguageName{"LO", "Laothian"},
    LanguageName{"LA", "Latin"},
    LanguageName{"LV", "Latvian"},
    LanguageName{"LN", "Lingala"},
    LanguageName{"LT", "Lithuanian"},
    LanguageName{"MK", "Macedonian"},
    LanguageName{"MG", "Malagasy"},
    LanguageName{"MS", "Malay"},
    LanguageName{"ML", "Malayalam"},
    LanguageName{"MT", "Maltese"},
    LanguageName{"MI", "Maori"},
    LanguageName{"MR", "Marathi"},
    LanguageName{"MO", "Moldavian"},
    LanguageName{"MN", "Mongolian"},
    LanguageName{"NA", "Nauru"},
    LanguageName{"NE", "Nepali"},
    LanguageName{"NO", "Norwegian"},
    LanguageName{"OC", "Occitan"},
    LanguageName{"OR", "Oriya"},
    LanguageName{"OM", "Oromo"},
    LanguageName{"PS", "Pashto"},
    LanguageName{"FA", "Persian"},
    LanguageName{"PL", "Polish"},
    LanguageName{"PT", "Portuguese"},
    LanguageName{"PA", "Punjabi"},
    LanguageName{"QU", "Quechua"},
    LanguageName{"RM", "Rhaeto-Romance"},
    LanguageName{"RO", "Romanian"},
    LanguageName{"RU", "Russian"},
    LanguageName{"SM", "Samoan"},
    LanguageName{"SG", "Sangro"},
    LanguageName{"SA", "Sanskrit"},
    LanguageName{"SR", "Serbian"},
    LanguageName{"SH", "Serbo-Croatian"},
    LanguageName{"ST", "Sesotho"},
    LanguageName{"TN", "Setswana"},
    LanguageName{"SN", "Shona"},
    LanguageName{"SD", "Sindhi"},
    LanguageName{"SI", "Singhalese"},
    LanguageName{"SS", "Siswati"},
    LanguageName{"SK", "Slovak"},
    LanguageName{"SL", "Slovenian"},
    LanguageName{"SO", "Somali"},
    LanguageName{"ES", "Spanish"},
    LanguageName{"SU", "Sudanese"},
    LanguageName{"SW", "Swahili"},
    LanguageName{"SV", "Swedish"},
    LanguageName{"TL", "Tagalog"},
    LanguageName{"TG", "Tajik"},
    LanguageName{"TA", "Tamil"},
    LanguageName{"TT", "Tatar"},
    LanguageName{"TE", "Tegulu"},
    LanguageName{"TH", "Thai"},
    LanguageName{"BO", "Tibetan"},
    LanguageName{"TI", "Tigrinya"},
    LanguageName{"TO", "Tonga"},
    LanguageName{"TS", "Tsonga"},
    LanguageName{"TR", "Turkish"},
    LanguageName{"TK", "Turkmen"},
    LanguageName{"TW", "Twi"},
    LanguageName{"UK", "Ukrainian"},
    LanguageName{"UR", "Urdu"},
    LanguageName{"UZ", "Uzbek"},
    LanguageName{"VI", "Vietnamese"},
    LanguageName{"VO", "Volapuk"},
    LanguageName{"CY", "Welsh"},
    LanguageName{"WO", "Wolof"},
    LanguageName{"XH", "Xhosa"},
    LanguageName{"JI", "Yiddish"},
    LanguageName{"YO", "Yoruba"},
    LanguageName{"ZU", "Zulu"},
    LanguageName{"UNKNOWN", "Unknown"},
};
static_assert(kLanguageNames.size() == 137);

}  // namespace

QString humanReadableLang(const QString &lang) {
    if (lang.size() < 2) {
        return lang;
    }
    QString code = lang.endsWith(QLatin1String("CC")) ? lang.left(2) : lang;
    // The two prefixes SAMI files commonly use for Korean and English.
    if (code == QLatin1String("KR")) {
        code = QStringLiteral("KO");
    } else if (code == QLatin1String("EG")) {
        code = QStringLiteral("EN");
    }
    for (const LanguageName &row : kLanguageNames) {
        if (code == QLatin1String(row.code)) {
            return QString::fromLatin1(row.name);
        }
    }
    return lang;
}

}  // namespace tolvane
