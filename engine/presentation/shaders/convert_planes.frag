#version 330 core
// Pictures held as planes, drawn in a single pass over the whole viewport:
// every plane is sampled with linear filtering, which scales the picture to
// the viewport and upsamples 4:2:0 chroma to the luma grid, then turned into
// RGB. The top of the picture is drawn at the top of the viewport. The
// exposure adjustment, in linear light, is 1 (none) for the platform
// player's frames. PLANE_LAYOUT is defined when the program is built, one
// program per layout, so that only the planes of the layout are sampled:
// 0 Y U V planes, 1 Y plane + U V pairs, 2 RGBA, 3 BGRA.

uniform sampler2D plane0;
uniform sampler2D plane1;
uniform sampler2D plane2;
uniform mat3 yuvToRgb;     // applied to (Y - lumaOffset, U - 128/255, V - 128/255)
uniform float lumaOffset;
uniform float exposureGain;  // 2^EV
uniform float exposureGainInSrgb;  // 2^(EV / 2.4)

in vec2 texCoord;
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

void main() {
    vec2 at = vec2(texCoord.x, 1.0 - texCoord.y);
#if PLANE_LAYOUT >= 2
    vec4 texel = texture(plane0, at);
#if PLANE_LAYOUT == 2
    vec3 rgb = texel.rgb;
#else
    vec3 rgb = texel.bgr;
#endif
#else
    float y = texture(plane0, at).r;
#if PLANE_LAYOUT == 0
    vec2 uv = vec2(texture(plane1, at).r, texture(plane2, at).r);
#else
    vec2 uv = texture(plane1, at).rg;
#endif
    vec3 rgb = clamp(yuvToRgb * vec3(y - lumaOffset, uv - 128.0 / 255.0), 0.0, 1.0);
#endif
    fragColour = vec4(exposed(rgb), 1.0);
}
