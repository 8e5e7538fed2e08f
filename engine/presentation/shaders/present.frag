#version 330 core
// Pass 2: the converted picture stretched over the whole view, top row first.
uniform sampler2D converted;
in vec2 texCoord;
out vec4 fragColour;

void main() {
    fragColour = texture(converted, vec2(texCoord.x, 1.0 - texCoord.y));
}
