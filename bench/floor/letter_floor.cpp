// The base of the letter benchmark: what this machine allows a single thread that does nothing but break lines greedily
// at one width per character, write page contents in Times-Roman and compress them. No shaping, no styles, no template.
// usage: letter_floor ROWS.csv OUT.pdf [zlib level]

#include <zlib.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

namespace {

constexpr double measure = 467.7;  // points
constexpr double pointSize = 11;
constexpr double averageWidth = 0.43 * pointSize;

const char* const paragraphs[] = {
    "vielen Dank fuer Ihr Vertrauen in unser Haus. Ihr Vertrag %s laeuft seit dem %s ohne jede Unterbrechung, und wir "
    "freuen uns sehr, dass Sie uns auch in diesem Jahr die Treue halten. Mit diesem Schreiben erhalten Sie die "
    "jaehrliche "
    "Abrechnung fuer die Lieferstelle in %s sowie einige wichtige Hinweise zu den Aenderungen, die zum kommenden "
    "Quartal "
    "fuer alle Kundinnen und Kunden in Kraft treten werden.",
    "Der Rechnungsbetrag belaeuft sich in diesem Jahr auf %s Euro und enthaelt die gesetzliche Mehrwertsteuer. Wir "
    "buchen "
    "diesen Betrag wie gewohnt von dem uns bekannten Konto ab, sofern Sie uns eine gueltige Einzugsermaechtigung "
    "erteilt "
    "haben. Andernfalls bitten wir Sie, den Betrag innerhalb von vierzehn Tagen nach Erhalt dieses Schreibens unter "
    "Angabe "
    "der Vertragsnummer zu ueberweisen.",
    "Ihr bisheriger Tarif %s wird unveraendert weitergefuehrt. Sollten Sie dennoch ueber einen Wechsel nachdenken, "
    "beraten "
    "wir Sie gern persoenlich: Unsere Mitarbeiterinnen und Mitarbeiter sind von Montag bis Freitag zwischen acht und "
    "achtzehn Uhr fuer Sie da und nehmen sich ausreichend Zeit fuer alle Ihre Fragen.",
    "Bitte pruefen Sie die Angaben zu Ihrer Anschrift und teilen Sie uns Aenderungen moeglichst frueh mit. Nur so "
    "koennen "
    "wir sicherstellen, dass alle Unterlagen rechtzeitig und vollstaendig bei Ihnen eintreffen. Ausserdem moechten wir "
    "Sie "
    "auf unser neues Angebot zur elektronischen Zustellung aufmerksam machen.",
    "Wir danken Ihnen nochmals fuer die gute Zusammenarbeit und freuen uns auf viele weitere Jahre mit Ihnen als "
    "geschaetztem Teil unserer Gemeinschaft."};

std::vector<std::string> split(const std::string& line) {
    std::vector<std::string> cells(1);
    bool quoted = false;
    for (char c : line) {
        if (c == '"')
            quoted = !quoted;
        else if (c == ',' && !quoted)
            cells.emplace_back();
        else if (static_cast<unsigned char>(c) < 128)
            cells.back() += c;
    }
    cells.resize(14);
    return cells;
}

void setParagraph(const std::string& text, double& y, std::string& content) {
    size_t start = 0;
    while (start < text.size()) {
        size_t end = start, breakAt = start;
        double width = 0;
        while (end < text.size() && (width += averageWidth) <= measure) {
            if (text[end] == ' ') breakAt = end;
            ++end;
        }
        if (end < text.size() && breakAt > start) end = breakAt;
        char place[48];
        std::snprintf(place, sizeof place, "1 0 0 1 70.87 %.2f Tm (", y);
        content += place;
        for (size_t i = start; i < end; ++i) {
            if (text[i] == '(' || text[i] == ')' || text[i] == '\\') content += '\\';
            content += text[i];
        }
        content += ") Tj\n";
        y -= 14;
        start = end < text.size() ? end + 1 : end;
    }
    y -= 6;
}

}  // namespace

int main(int argumentCount, char** arguments) {
    if (argumentCount < 3) return std::cerr << "usage: letter_floor ROWS.csv OUT.pdf [level]\n", 2;
    const int level = argumentCount > 3 ? std::atoi(arguments[3]) : 6;
    std::ifstream rows(arguments[1]);
    std::FILE* out = std::fopen(arguments[2], "wb");
    if (!rows || !out) return std::cerr << "letter_floor: can't open the files\n", 1;
    std::vector<long> offsets(4, 0);
    std::vector<int> pages;
    std::fputs("%PDF-1.4\n", out);
    const auto begin = [&](size_t number) {
        if (offsets.size() <= number) offsets.resize(number + 1);
        offsets[number] = std::ftell(out);
        std::fprintf(out, "%zu 0 obj\n", number);
    };
    std::string line, content;
    std::vector<unsigned char> packed;
    std::getline(rows, line);
    while (std::getline(rows, line)) {
        const std::vector<std::string> cells = split(line);
        content = "BT /F1 11 Tf\n";
        double y = 640;
        for (int i : {4, 3, 5, 7}) setParagraph(cells[i], y, content);
        for (const char* paragraph : paragraphs) {
            char text[1024];
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
            std::snprintf(text, sizeof text, paragraph, cells[8].c_str(), cells[9].c_str(), cells[7].c_str());
            setParagraph(text, y, content);
        }
        content += "ET\n";
        uLongf size = compressBound(content.size());
        packed.resize(size);
        compress2(packed.data(), &size, reinterpret_cast<const Bytef*>(content.data()), content.size(), level);
        const size_t number = offsets.size();
        begin(number);
        std::fprintf(out, "<</Length %lu/Filter/FlateDecode>>stream\n", size);
        std::fwrite(packed.data(), 1, size, out);
        std::fputs("\nendstream endobj\n", out);
        begin(number + 1);
        std::fprintf(out,
                     "<</Type/Page/Parent 2 0 R/MediaBox[0 0 595.28 841.89]/Resources<</Font<</F1 3 0 R>>>>/Contents "
                     "%zu 0 R>>endobj\n",
                     number);
        pages.push_back(static_cast<int>(number + 1));
    }
    begin(1);
    std::fputs("<</Type/Catalog/Pages 2 0 R>>endobj\n", out);
    begin(2);
    std::fprintf(out, "<</Type/Pages/Count %zu/Kids[", pages.size());
    for (int page : pages) std::fprintf(out, "%d 0 R ", page);
    std::fputs("]>>endobj\n", out);
    begin(3);
    std::fputs("<</Type/Font/Subtype/Type1/BaseFont/Times-Roman>>endobj\n", out);
    const long start = std::ftell(out);
    std::fprintf(out, "xref\n0 %zu\n0000000000 65535 f \n", offsets.size());
    for (size_t i = 1; i < offsets.size(); ++i) std::fprintf(out, "%010ld 00000 n \n", offsets[i]);
    std::fprintf(out, "trailer<</Size %zu/Root 1 0 R>>\nstartxref\n%ld\n%%%%EOF\n", offsets.size(), start);
    std::fclose(out);
    return 0;
}
