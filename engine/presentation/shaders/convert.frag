#version 330 core
// Pass 1: one fragment per picture pixel. Reads the bitmap in its own layout,
// turns it into RGB and applies the exposure adjustment in linear light.
// Output row r holds bitmap row r (the top of the picture is row 0).

uniform sampler2D picture;
uniform int pictureLayout;        // 0 packed 4:2:2 (U Y0 V Y1), 1 RGBA 16-bit, 2 ARGB 8-bit
uniform int pictureWidth;   // pixels of the picture
uniform mat3 yuvToRgb;      // applied to (Y - 16/255, U - 128/255, V - 128/255)
uniform float exposureGain; // 2^EV
uniform float exposureGainInSrgb;  // 2^(EV / 2.4)

out vec4 fragColour;

// sRGB above its linear toe is a power of 2.4 with an offset, so scaling
// the light by g is exactly c' = (c + 0.055) g^(1/2.4) - 0.055 there, and
// c' = g c on the toe. The one stretch this misses, toe inputs whose scaled
// light leaves the toe, lies within 0.5/255 of the exact curve for gains up
// to +0.5 EV; the round trip through linear light costs six pow() a pixel.
vec3 exposed(vec3 c) {
    vec3 scaled = mix(c * exposureGain, (c + 0.055) * exposureGainInSrgb - 0.055,
                      step(vec3(0.04045), c));
    return clamp(scaled, 0.0, 1.0);
}

vec3 packedPixel(ivec2 at) {
    // The texture holds byte pairs: (U, Y0) at even texels, (V, Y1) at odd ones.
    int pairStart = min(at.x & ~1, max(pictureWidth - 2, 0));
    vec2 first = texelFetch(picture, ivec2(pairStart, at.y), 0).rg;
    vec2 second = texelFetch(picture, ivec2(pairStart + 1, at.y), 0).rg;
    float y = (at.x & 1) == 0 ? first.g : second.g;
    return clamp(yuvToRgb * vec3(y - 16.0 / 255.0, first.r - 128.0 / 255.0,
                                 second.r - 128.0 / 255.0), 0.0, 1.0);
}

void main() {
    ivec2 at = ivec2(gl_FragCoord.xy);
    vec3 rgb;
    if (pictureLayout == 0) {
        rgb = packedPixel(at);
    } else if (pictureLayout == 1) {
        rgb = texelFetch(picture, at, 0).rgb;
    } else {
        rgb = texelFetch(picture, at, 0).gba;
    }
    fragColour = vec4(exposed(rgb), 1.0);
}
