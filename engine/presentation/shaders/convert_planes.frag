#version 330 core
// Pictures held as planes, drawn in a single pass over the whole viewport:
// every plane is sampled with linear filtering, which scales the picture to
// the viewport and upsamples 4:2:0 chroma to the luma grid, then turned into
// RGB. The top of the picture is drawn at the top of the viewport. The
// exposure adjustment, in linear light, is 1 (none) for the platform
// player's frames.

uniform sampler2D plane0;
uniform sampler2D plane1;
uniform sampler2D plane2;
uniform int planeLayout;   // 0 Y U V planes, 1 Y plane + U V pairs, 2 RGBA, 3 BGRA
uniform mat3 yuvToRgb;     // applied to (Y - lumaOffset, U - 128/255, V - 128/255)
uniform float lumaOffset;
uniform float exposureGain;  // 2^EV

in vec2 texCoord;
out vec4 fragColour;

vec3 srgbToLinear(vec3 c) {
    return mix(c / 12.92, pow((c + 0.055) / 1.055, vec3(2.4)), step(vec3(0.04045), c));
}

vec3 linearToSrgb(vec3 c) {
    return mix(c * 12.92, 1.055 * pow(c, vec3(1.0 / 2.4)) - 0.055, step(vec3(0.0031308), c));
}

void main() {
    vec2 at = vec2(texCoord.x, 1.0 - texCoord.y);
    vec3 rgb;
    if (planeLayout >= 2) {
        vec4 texel = texture(plane0, at);
        rgb = planeLayout == 2 ? texel.rgb : texel.bgr;
    } else {
        float y = texture(plane0, at).r;
        vec2 uv = planeLayout == 0 ? vec2(texture(plane1, at).r, texture(plane2, at).r)
                                   : texture(plane1, at).rg;
        rgb = clamp(yuvToRgb * vec3(y - lumaOffset, uv - 128.0 / 255.0), 0.0, 1.0);
    }
    if (exposureGain != 1.0) {
        rgb = linearToSrgb(clamp(srgbToLinear(rgb) * exposureGain, 0.0, 1.0));
    }
    fragColour = vec4(rgb, 1.0);
}
