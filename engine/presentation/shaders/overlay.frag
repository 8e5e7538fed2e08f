#version 330 core
// One area of the overlay drawn over the picture: the viewport is the area,
// `area` its place in the overlay texture (x, y of the top left, width,
// height, in texture units, the top row of the overlay at y = 0). The overlay
// holds premultiplied colours, blended with (1, 1 - source alpha).
uniform sampler2D overlay;
uniform vec4 area;
in vec2 texCoord;
out vec4 fragColour;

void main() {
    fragColour = texture(overlay, area.xy + vec2(texCoord.x, 1.0 - texCoord.y) * area.zw);
}
