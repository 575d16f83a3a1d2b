#pragma once
// Reads a page description back: what a test may say about it is said of operators and numbers, not of bytes.

#include <map>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace reading {

struct Rectangle {
    double x, y, width, height;
    double right() const { return x + width; }
    double top() const { return y + height; }
};

struct Line {
    std::string font;
    double size, x, y;
    std::string text;
};

/// Everything in millimetres, sizes too.
struct Drawing {
    std::vector<Rectangle> rectangles;
    std::vector<Line> lines;
    std::vector<std::string> colour;  ///< operands and operator of the one colour that is set
    std::map<std::string, int> operators;
};

inline std::string unescaped(const std::string& token) {
    std::string text;
    for (size_t at = 1; at + 1 < token.size(); ++at) {
        if (token[at] == '\\') ++at;
        text += token[at];
    }
    return text;
}

/// Numbers, names, operators, and strings in parentheses as one token each.
inline std::vector<std::string> tokens(const std::string& content) {
    std::vector<std::string> found;
    for (size_t at = 0; at < content.size();) {
        if (content[at] == ' ' || content[at] == '\n') {
            ++at;
            continue;
        }
        size_t end = at;
        if (content[at] == '(') {
            for (++end; content.at(end) != ')'; ++end)
                if (content[end] == '\\') ++end;
            ++end;
        } else {
            end = content.find_first_of(" \n(", at);
        }
        found.push_back(content.substr(at, end - at));
        at = end;
    }
    return found;
}

inline Drawing drawingOf(const std::string& content) {
    Drawing drawing;
    std::vector<std::string> operands;
    double scale = 0;
    Line line{};
    const auto number = [&](size_t index) { return std::stod(operands.at(index)); };
    for (const std::string& token : tokens(content)) {
        if (token[0] == '(' || token[0] == '/' || token[0] == '-' || (token[0] >= '0' && token[0] <= '9')) {
            operands.push_back(token);
            continue;
        }
        ++drawing.operators[token];
        if (token == "cm") scale = number(0) * 25.4 / 72;
        if (token == "re")
            drawing.rectangles.push_back({number(0) * scale, number(1) * scale, number(2) * scale, number(3) * scale});
        if (token == "k" || token == "g" || token == "rg") {
            drawing.colour = operands;
            drawing.colour.push_back(token);
        }
        if (token == "BT") line = {};
        if (token == "Tf") {
            line.font = operands.at(0);
            line.size = number(1) * scale;
        }
        if (token == "Td") {
            line.x = number(0) * scale;
            line.y = number(1) * scale;
        }
        if (token == "Tj") {
            line.text = unescaped(operands.at(0));
            drawing.lines.push_back(line);
        }
        operands.clear();
    }
    return drawing;
}

/// Dark modules as '1', light ones as '0', from the first rectangle to the last at a height.
inline std::string modulesAt(const Drawing& drawing, double height, double module) {
    std::string modules;
    double right = -1;
    for (const Rectangle& bar : drawing.rectangles) {
        if (bar.y > height || bar.top() < height) continue;
        const auto count = [&](double length) { return static_cast<size_t>(length / module + 0.5); };
        if (right >= 0) modules.append(count(bar.x - right), '0');
        modules.append(count(bar.width), '1');
        right = bar.right();
    }
    return modules;
}

}  // namespace reading
