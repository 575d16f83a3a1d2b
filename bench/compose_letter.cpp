// What composing one letter of a merge costs: an address block, a date and a body of nine paragraphs, six values of
// which change from record to record. "Unchanged" composes the same record again.

#include <benchmark/benchmark.h>

#include <array>
#include <string>
#include <vector>

#include "desk/text/composer.h"

namespace {

using namespace desk;

struct Record {
    std::u16string company, name, street, city, salutation, last, contract, date, amount, product;
};

const std::array<const char16_t*, 12> kNames = {u"Schneider", u"Brandt", u"Lindqvist",    u"Hoffmann",
                                                u"Özdemir",   u"Krüger", u"Weißenberger", u"Nowak",
                                                u"Petersen",  u"García", u"Albrecht",     u"Fischer"};
const std::array<const char16_t*, 8> kCities = {u"Hamburg", u"Braunschweig",      u"Köln", u"Garmisch-Partenkirchen",
                                                u"Lübeck",  u"Frankfurt am Main", u"Kiel", u"Weimar"};

std::u16string digits(size_t number) {
    const std::string text = std::to_string(number);
    return {text.begin(), text.end()};
}

Record record(size_t i) {
    Record r;
    r.last = kNames[i % kNames.size()];
    r.company = i % 3 == 0 ? u"" : r.last + u" & Söhne GmbH";
    r.name = u"Andrea " + r.last;
    r.street = u"Hauptstraße " + digits(i % 190 + 1);
    r.city = kCities[i % kCities.size()];
    r.salutation = i % 2 ? u"Sehr geehrte Frau " : u"Sehr geehrter Herr ";
    r.contract = u"NE-" + digits(1000000 + i * 7919 % 8999999);
    r.date = digits(i % 28 + 1) + u". März 20" + digits(i % 15 + 10);
    r.amount = digits(i * 37 % 900 + 100) + u"," + digits(i % 90 + 10);
    r.product = i % 2 ? u"Nordlicht Ökostrom Plus" : u"Nordlicht Gas Komfort 24";
    return r;
}

/// The letter as a document: three frames, styles as in samples/letter.idml.
class Letter {
  public:
    Letter() {
        Spread& spread = document_.addSpread(false);
        Layer& layer = document_.addLayer("Layer");
        Page& page = document_.addPage(spread);
        page.bounds = {0, 0, 595.28, 841.89};
        page.name = "1";
        body_ = format(11, Justification::LeftJustified, 15, 6);
        plain_ = format(10.5, Justification::Left, 14, 0);
        address_ = addFrame(spread, layer, {71, 127, 312, 212});
        date_ = addFrame(spread, layer, {340, 240, 538, 258});
        letter_ = addFrame(spread, layer, {71, 280, 538.7, 760});
    }

    void fill(const Record& r) {
        const std::u16string first = r.company.empty() ? std::u16string() : r.company + u"\r";
        setText(address_, plain_, first + r.name + u"\r" + r.street + u"\r" + r.city + u"\r");
        setText(date_, plain_, u"Hamburg, " + r.date + u"\r");
        setText(
            letter_, body_,
            r.salutation + r.last + u",\r" + u"vielen Dank für Ihr Vertrauen in unser Haus. Ihr Vertrag " + r.contract +
                u" läuft seit dem " + r.date +
                u" ohne jede Unterbrechung, und wir freuen uns sehr, dass Sie uns auch in diesem Jahr die Treue "
                u"halten. "
                u"Mit diesem Schreiben erhalten Sie die jährliche Abrechnung für die Lieferstelle in " +
                r.city +
                u" sowie einige wichtige Hinweise zu den Änderungen, die zum kommenden Quartal für alle Kundinnen und "
                u"Kunden in Kraft treten werden.\rDer Rechnungsbetrag beläuft sich in diesem Jahr auf " +
                r.amount +
                u" Euro und enthält die gesetzliche Mehrwertsteuer. Wir buchen diesen Betrag wie gewohnt von dem uns "
                u"bekannten Konto ab, sofern Sie uns eine gültige Einzugsermächtigung erteilt haben. Andernfalls "
                u"bitten "
                u"wir Sie, den Betrag innerhalb von vierzehn Tagen nach Erhalt dieses Schreibens unter Angabe der "
                u"Vertragsnummer zu überweisen. Die genaue Aufschlüsselung der einzelnen Posten finden Sie in Ihrem "
                u"persönlichen Kundenbereich, den Sie jederzeit mit Ihren Zugangsdaten erreichen können.\r"
                u"Ihr bisheriger Tarif " +
                r.product +
                u" wird unverändert weitergeführt. Sollten Sie dennoch über einen Wechsel nachdenken, beraten "
                u"wir Sie, " +
                r.last +
                u", gern persönlich: Unsere Mitarbeiterinnen und Mitarbeiter sind von Montag bis Freitag zwischen acht "
                u"und achtzehn Uhr für Sie da und nehmen sich ausreichend Zeit für alle Ihre Fragen. Häufig läßt sich "
                u"der Verbrauch schon durch kleine Änderungen im Alltag deutlich verringern, ohne daß Sie auf "
                u"Bequemlichkeit verzichten müßten.\rBitte prüfen Sie die Angaben zu Ihrer Anschrift und teilen Sie "
                u"uns "
                u"Änderungen möglichst früh mit. Nur so können wir sicherstellen, daß alle Unterlagen rechtzeitig und "
                u"vollständig bei Ihnen eintreffen. Außerdem möchten wir Sie auf unser neues Angebot zur "
                u"elektronischen "
                u"Zustellung aufmerksam machen, mit dem Sie Papier sparen und alle Schreiben dauerhaft an einem Ort "
                u"aufbewahren können.\rWir danken Ihnen nochmals für die gute Zusammenarbeit und freuen uns auf viele "
                u"weitere Jahre mit Ihnen als geschätztem Teil unserer Gemeinschaft.\rMit freundlichen Grüßen\r\r"
                u"Nordlicht Energie AG\r");
    }

    size_t compose(Composer& composer) {
        size_t frames = 0;
        for (Uid story : {address_, date_, letter_}) frames += composer.compose(story).frames.size();
        return frames;
    }
    const Document& document() const { return document_; }

  private:
    ParagraphFormatId format(double size, Justification justification, double leading, double spaceAfter) {
        ParagraphFormat result;
        result.overrides.fontFamily = "Liberation Serif";
        result.overrides.pointSize = size;
        result.overrides.leading = Leading{false, leading};
        result.overrides.justification = justification;
        result.overrides.spaceAfter = spaceAfter;
        result.overrides.language = "$ID/German: 2006 Reform";
        return document_.paragraphFormatId(result);
    }

    Uid addFrame(Spread& spread, Layer& layer, const Rect& rect) {
        Story& story = document_.addStory();
        PageItem& frame = document_.addItem(ItemKind::TextFrame);
        frame.path = rectanglePath(rect);
        frame.story = story.uid;
        document_.placeOnSpread(frame, spread, layer);
        document_.threadsChanged();
        return story.uid;
    }

    void setText(Uid uid, ParagraphFormatId format, std::u16string text) {
        auto content = std::make_shared<StoryContent>();
        content->text = std::move(text);
        content->paragraphRuns = {{0, format}};
        document_.story(uid)->setContent(content);
    }

    Document document_;
    ParagraphFormatId body_ = 0, plain_ = 0;
    Uid address_ = 0, date_ = 0, letter_ = 0;
};

void composeLetter(benchmark::State& state) {
    static FontLibrary fonts;
    Letter letter;
    Composer composer(letter.document(), fonts);
    std::vector<Record> records;
    for (size_t i = 0; i < 5000; ++i) records.push_back(record(i));
    size_t next = 0;
    for (auto _ : state) {
        letter.fill(records[next++ % records.size()]);
        benchmark::DoNotOptimize(letter.compose(composer));
    }
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations()));
}
BENCHMARK(composeLetter)->Unit(benchmark::kMicrosecond);

void fillLetterAlone(benchmark::State& state) {
    Letter letter;
    std::vector<Record> records;
    for (size_t i = 0; i < 5000; ++i) records.push_back(record(i));
    size_t next = 0;
    for (auto _ : state) letter.fill(records[next++ % records.size()]);
}
BENCHMARK(fillLetterAlone)->Unit(benchmark::kMicrosecond);

void composeUnchangedLetter(benchmark::State& state) {
    static FontLibrary fonts;
    Letter letter;
    Composer composer(letter.document(), fonts);
    letter.fill(record(1));
    for (auto _ : state) benchmark::DoNotOptimize(letter.compose(composer));
}
BENCHMARK(composeUnchangedLetter)->Unit(benchmark::kNanosecond);

}  // namespace
