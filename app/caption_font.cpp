#include "caption_font.h"

#include <fontconfig/fontconfig.h>

#include <cstdlib>
#include <memory>

#include "user_defaults.h"

namespace tolvane {
namespace {

struct FontPatternDeleter {
    void operator()(FcPattern *pattern) const { FcPatternDestroy(pattern); }
};
struct FontObjectSetDeleter {
    void operator()(FcObjectSet *objects) const { FcObjectSetDestroy(objects); }
};
struct FontSetDeleter {
    void operator()(FcFontSet *fonts) const { FcFontSetDestroy(fonts); }
};
using FontPatternPtr = std::unique_ptr<FcPattern, FontPatternDeleter>;
using FontObjectSetPtr = std::unique_ptr<FcObjectSet, FontObjectSetDeleter>;
using FontSetPtr = std::unique_ptr<FcFontSet, FontSetDeleter>;

constexpr const char *kNotoSansCJKFamilyPrefix = "Noto Sans CJK ";
constexpr const char *kFamiliesInPreferenceOrder[] = {"KR", "JP", "SC", "TC", "HK"};
constexpr int kLightWeight = FC_WEIGHT_LIGHT;

QString stringOfPattern(FcPattern *pattern, const char *object) {
    FcChar8 *value = nullptr;
    if (FcPatternGetString(pattern, object, 0, &value) != FcResultMatch || !value) {
        return {};
    }
    return QString::fromUtf8(reinterpret_cast<const char *>(value));
}

QString systemSansSerifFamily() {
    const FontPatternPtr pattern(FcNameParse(reinterpret_cast<const FcChar8 *>("sans-serif")));
    if (!pattern) {
        return fallbackCaptionFontName();
    }
    FcConfigSubstitute(nullptr, pattern.get(), FcMatchPattern);
    FcDefaultSubstitute(pattern.get());
    FcResult result = FcResultNoMatch;
    const FontPatternPtr match(FcFontMatch(nullptr, pattern.get(), &result));
    const QString family = match ? stringOfPattern(match.get(), FC_FAMILY) : QString();
    return family.isEmpty() ? fallbackCaptionFontName() : family;
}

}  // namespace

QList<InstalledFontFace> installedNotoSansCJKFaces() {
    QList<InstalledFontFace> faces;
    const FontPatternPtr anyFont(FcPatternCreate());
    const FontObjectSetPtr objects(FcObjectSetBuild(FC_FAMILY, FC_STYLE, FC_WEIGHT, nullptr));
    if (!anyFont || !objects) {
        return faces;
    }
    const FontSetPtr fonts(FcFontList(nullptr, anyFont.get(), objects.get()));
    if (!fonts) {
        return faces;
    }
    for (int i = 0; i < fonts->nfont; ++i) {
        FcPattern *font = fonts->fonts[i];
        // A face lists several family names (one per language); keep the
        // Noto Sans CJK one.
        FcChar8 *family = nullptr;
        for (int n = 0; FcPatternGetString(font, FC_FAMILY, n, &family) == FcResultMatch; ++n) {
            const QString name = QString::fromUtf8(reinterpret_cast<const char *>(family));
            if (name.startsWith(QLatin1String(kNotoSansCJKFamilyPrefix))) {
                int weight = 0;
                FcPatternGetInteger(font, FC_WEIGHT, 0, &weight);
                faces.append({name, stringOfPattern(font, FC_STYLE), weight});
                break;
            }
        }
    }
    return faces;
}

QString preferredCaptionFontNameAmong(const QList<InstalledFontFace> &faces) {
    for (const char *language : kFamiliesInPreferenceOrder) {
        const QString family = QLatin1String(kNotoSansCJKFamilyPrefix) + QLatin1String(language);
        const InstalledFontFace *best = nullptr;
        for (const InstalledFontFace &face : faces) {
            if (face.family != family || face.style.isEmpty()) {
                continue;
            }
            const int distance = std::abs(face.weight - kLightWeight);
            if (!best || distance < std::abs(best->weight - kLightWeight)) {
                best = &face;
            }
        }
        if (best) {
            return fontNameForFace(*best);
        }
    }
    return {};
}

QString preferredCaptionFontName() {
    const QString noto = preferredCaptionFontNameAmong(installedNotoSansCJKFaces());
    return noto.isEmpty() ? systemSansSerifFamily() : noto;
}

QString fontNameForFace(const InstalledFontFace &face) {
    return face.style.isEmpty() ? face.family
                                : face.family + QStringLiteral(":style=") + face.style;
}

}  // namespace tolvane
