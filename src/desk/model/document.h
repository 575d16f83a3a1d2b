#pragma once
// A document as objects with UIDs. This is data: the IDML reader fills it, the border shows it to plug-ins, the
// composer and the output read it. Nothing here knows a plug-in, a font file or a PDF.

#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <unordered_map>
#include <variant>
#include <vector>

#include "desk/model/geometry.h"
#include "desk/model/placed_graphic.h"
#include "desk/model/story.h"
#include "desk/model/text_attributes.h"

namespace desk {

/// What the desk throws for input that can't be used: one sentence that says what, where and what to do.
class InputError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// Text values under keys, in the order in which they came. A key that stands twice reads as the last.
class Labels {
  public:
    /// Empty when the key is absent. The reference stays good until the labels change.
    const std::string& get(const std::string& key) const;
    /// An empty value removes the key.
    void set(const std::string& key, const std::string& value);
    const std::vector<std::pair<std::string, std::string>>& pairs() const { return pairs_; }

  private:
    std::vector<std::pair<std::string, std::string>> pairs_;
};

enum class ColorSpace { Gray, CMYK, RGB, LAB };

/// A colour value in its own space. CMYK 0..100 each, RGB 0..255 each, LAB L 0..100 and a, b -128..127.
struct ColorValue {
    ColorSpace space = ColorSpace::CMYK;
    double component[4] = {0, 0, 0, 0};
    bool operator==(const ColorValue&) const = default;
};

enum class SwatchKind { None, Process, Spot, Registration, Tint, Gradient };

struct GradientStop {
    std::string color;     ///< id of a swatch
    double location = 0;   ///< percent
    double midpoint = 50;  ///< percent, place of the half-way colour between the stop before and this one
};

struct Swatch {
    std::string self;  ///< "Color/Black", "Swatch/None", "Tint/...", "Gradient/..."
    std::string name;  ///< separation name of a spot colour
    SwatchKind kind = SwatchKind::Process;
    ColorValue value;       ///< process value, or the alternate of a spot colour in process space
    std::string baseColor;  ///< of a tint
    double tint = 100;      ///< of a tint, percent
    bool radial = false;    ///< of a gradient
    std::vector<GradientStop> stops;
};

enum class StyleKind { Paragraph, Character, Object, Table, Cell };

/// The look of a page item, sparse as styles and items carry it.
struct ItemAttributes {
    std::optional<std::string> fillColor, strokeColor, gapColor;  ///< ids of swatches
    std::optional<double> fillTint, strokeTint, gapTint;          ///< percent, -1 is not set
    std::optional<double> strokeWeight;                           ///< points
    std::optional<std::string> strokeType;                        ///< id of a stroke style
    std::optional<int> strokeAlignment;                           ///< 0 centred, 1 inside, 2 outside
    std::optional<int> endCap, endJoin;  ///< as in PDF: 0 butt/mitre, 1 round, 2 projecting/bevel
    std::optional<double> miterLimit;
    std::optional<std::vector<double>> dashes;   ///< points: dash, gap, ...
    std::optional<std::string> cornerOption[4];  ///< left top, right top, left bottom, right bottom
    std::optional<double> cornerRadius[4];       ///< points
    std::optional<std::string> leftLineEnd, rightLineEnd;
    std::optional<bool> overprintFill, overprintStroke, nonprinting;
    std::optional<double> gradientAngle, gradientLength;
    std::optional<Point> gradientStart;  ///< inner coordinates
    std::optional<double> opacity;       ///< percent
    std::optional<std::string> blendMode;

    void overlay(const ItemAttributes& stronger);
};

enum class FirstBaseline { AscentOffset, CapHeight, LeadingOffset, EmboxHeight, XHeight, FixedHeight };
enum class VerticalJustification { Top, Center, Bottom, Justify };

/// How a text frame takes its text, sparse. Lengths in points.
struct TextFrameOptions {
    std::optional<int> columnCount;
    std::optional<double> columnGutter;
    std::optional<double> insetTop, insetLeft, insetBottom, insetRight;
    std::optional<FirstBaseline> firstBaseline;
    std::optional<double> minimumFirstBaseline;
    std::optional<VerticalJustification> verticalJustification;
    std::optional<double> verticalThreshold;
    std::optional<bool> ignoreWrap;
    std::optional<std::string> autoSizing;

    void overlay(const TextFrameOptions& stronger);
};

enum class TextWrapMode { None, BoundingBox, Contour, JumpObject, NextColumn };

struct TextWrap {
    TextWrapMode mode = TextWrapMode::None;
    double top = 0, left = 0, bottom = 0, right = 0;  ///< offsets in points
};

struct Style {
    Uid uid = 0;
    StyleKind kind = StyleKind::Paragraph;
    std::string self;              ///< "ParagraphStyle/Body"
    std::string name;              ///< as a person reads it: "Body", "[No character style]"
    std::string basedOn;           ///< self of the parent; empty for none (cycles are cut by the reader)
    TextAttributes text;           ///< paragraph and character styles
    ItemAttributes item;           ///< object styles
    TextFrameOptions frame;        ///< object styles
    FrameFitting fitting;          ///< object styles
    std::optional<TextWrap> wrap;  ///< object styles
};

/// A character style and the overrides on top of it.
struct CharacterFormat {
    Uid style = 0;  ///< 0 is "[No character style]"
    TextAttributes overrides;
    bool operator==(const CharacterFormat&) const = default;
};

/// A paragraph style and the overrides on top of it (character attributes may be among them).
struct ParagraphFormat {
    Uid style = 0;  ///< 0 is "[No paragraph style]"
    TextAttributes overrides;
    bool operator==(const ParagraphFormat&) const = default;
};

enum class ItemKind { Rectangle, Oval, Polygon, GraphicLine, TextFrame, Group, Graphic, Unknown };

/// What a frame says that it holds.
enum class ContentType : uint8_t { Unassigned, Graphic, Text };

struct PageItem {
    Uid uid = 0;
    std::string self;  ///< id in the package; empty for an item made in memory
    std::string name;  ///< as a person named it; may be empty
    ItemKind kind = ItemKind::Rectangle;
    Uid parent = 0;             ///< group, frame, spread layer or owned item that holds it
    Uid spread = 0;             ///< spread that holds it, at whatever depth; 0 for an item inside a story
    Uid layer = 0;              ///< of a top-level item: its document layer; inside a group that of the group
    std::vector<Uid> children;  ///< of a group or a frame, bottom first
    Matrix transform;           ///< inner coordinates to the parent's
    Path path;                  ///< inner coordinates
    bool visible = true;
    ItemAttributes attributes;  ///< what the item says itself; Document::itemAttributes gives the cascade's result
    std::string objectStyle;    ///< self of its object style
    TextFrameOptions frameOptions;
    FrameFitting fitting;  ///< what the item says itself; Document::frameFitting gives the cascade's result
    ContentType contentType = ContentType::Unassigned;
    TextWrap wrap;
    Labels labels;
    std::optional<PlacedGraphic> graphic;  ///< of kind Graphic

    // Text frames
    Uid story = 0;
    Uid previousFrame = 0;
    Uid nextFrame = 0;

    uint64_t revision = 0;  ///< grows with every change of this item's own look
};

struct Layer {
    Uid uid = 0;
    std::string self;
    std::string name;
    bool visible = true;
    bool printable = true;
    bool locked = false;
};

/// The items of one document layer on one spread, bottom first.
struct SpreadLayer {
    Uid uid = 0;
    Uid layer = 0;
    Uid spread = 0;
    std::vector<Uid> items;
};

struct Page {
    Uid uid = 0;
    std::string self;
    std::string name;  ///< the number as it is shown: "1", "iv"
    Uid spread = 0;
    Rect bounds;                ///< page inner coordinates
    Matrix transform;           ///< to spread coordinates
    std::string appliedMaster;  ///< self of a master spread, empty for none
    Matrix masterTransform;
    std::vector<std::string> overriddenMasterItems;  ///< selves of master items that this page replaces
    Rect margins;                                    ///< distances from the page's edges, points
    std::string sectionMarker;                       ///< text of marker::sectionMarker on this page

    Rect rectInSpread() const { return transform.boundsOf(bounds); }
};

struct Spread {
    Uid uid = 0;
    std::string self;
    std::string name;
    bool isMaster = false;
    bool showMasterItems = true;
    Matrix transform;         ///< to the pasteboard
    int bindingLocation = 0;  ///< pages left of the spine
    std::vector<Uid> pages;
    std::vector<Uid> layers;  ///< spread layers, in the order of the document's layers, one for each
    std::string basedOn;      ///< of a master: self of its own master
};

struct Preferences {
    double pageWidth = 612, pageHeight = 792;
    bool facingPages = false;
    double bleedTop = 0, bleedBottom = 0, bleedInside = 0, bleedOutside = 0;
    double superscriptSize = 58.3, superscriptPosition = 33.3;
    double subscriptSize = 58.3, subscriptPosition = 33.3;
    double smallCapSize = 70;
    bool useParagraphLeading = false;
    double baselineGridStart = 36, baselineGridDivision = 12;
    bool baselineGridFromMargin = false;
};

/// A font that the document names: family and style as text attributes name them.
struct NamedFont {
    std::string family, style, postScriptName;
};

/// What reading met and passed over, told to whoever asks.
struct ReadingNote {
    std::string where;  ///< member of the package
    std::string what;
};

class Document {
  public:
    Document();
    Document(const Document&) = delete;
    Document& operator=(const Document&) = delete;

    std::string name;  ///< file name without folder
    std::string path;  ///< the file it was read from; empty for one made in memory
    Preferences preferences;
    Labels labels;
    std::vector<NamedFont> fonts;
    std::vector<ReadingNote> notes;
    std::deque<Layer> layers;  ///< bottom first
    Uid activeLayer = 0;       ///< the layer that was chosen for new content; 0 for none
    std::vector<Uid> spreads;  ///< in page order
    std::vector<Uid> masterSpreads;
    std::vector<Uid> stories;                                 ///< in the order of the package; made ones at the end
    std::map<std::string, Swatch> swatches;                   ///< by self
    std::map<std::string, std::vector<double>> strokeStyles;  ///< custom dash arrays by self

    /// An object that only a Uid names: what kind it is and where it stands.
    enum class Kind : uint8_t {
        None,
        Root,
        Workspace,
        Spread,
        Page,
        Layer,
        SpreadLayer,
        Item,
        MultiColumnFrame,
        TextColumn,
        AnchoredObject,
        Story,
        Style
    };
    Kind kindOf(Uid uid) const;

    Uid rootUid() const { return 1; }
    Uid workspaceUid() const { return 2; }

    // Making objects. The reference stays good until the object is destroyed.
    Story& addStory();
    /// `self` is the id in a package; empty for an item made in memory.
    PageItem& addItem(ItemKind kind, const std::string& self = {});
    Spread& addSpread(bool master);
    Page& addPage(Spread& spread);
    /// Adds a layer on top, and its spread layer to every spread that exists.
    Layer& addLayer(const std::string& layerName);
    /// The two root styles "[No paragraph style]" and "[No character style]" exist from the start: adding one of them
    /// gives the one that is there, under its new `self`. Name and `self` of a style stay as they were given here.
    Style& addStyle(StyleKind kind, const std::string& styleName, const std::string& self = {});
    /// Puts an item on top of the items of a layer of a spread.
    void placeOnSpread(PageItem& item, Spread& spread, const Layer& layer);
    /// Puts an item inside a group or a frame, on top of what it holds.
    void placeInside(PageItem& item, PageItem& container);

    // Looking up; null when the Uid names nothing or another kind.
    Story* story(Uid uid);
    const Story* story(Uid uid) const;
    PageItem* item(Uid uid);
    const PageItem* item(Uid uid) const;
    Spread* spread(Uid uid);
    const Spread* spread(Uid uid) const;
    Page* page(Uid uid);
    const Page* page(Uid uid) const;
    Layer* layer(Uid uid);
    const Layer* layer(Uid uid) const;
    SpreadLayer* spreadLayer(Uid uid);
    const SpreadLayer* spreadLayer(Uid uid) const;
    Style* style(Uid uid);
    const Style* style(Uid uid) const;
    /// The first style that was added under this name.
    const Style* styleNamed(StyleKind kind, const std::string& styleName) const;
    const Style* styleWithSelf(const std::string& self) const;
    /// All styles of all kinds, in the order in which they were added.
    const std::deque<Style>& styles() const { return styleStore_; }
    PageItem* itemWithSelf(const std::string& self);
    const Swatch* swatch(const std::string& self) const;

    /// All pages of all document spreads, in order.
    std::vector<Uid> pages() const;

    /// Removes an item with everything in it, wherever it stands.
    void removeItem(Uid uid);
    /// Removes a document spread with its pages and everything on it; the stories stay. False for a Uid that is no
    /// document spread.
    bool removeSpread(Uid uid);
    /// Removes a story with the items that stand in its text and in no other's; frames that showed it show none.
    void removeStory(Uid uid);

    // Text frames. The border counts one multi-column frame and, for each column, one text column beside every text
    // frame; their Uids are made on first asking and stay.
    Uid multiColumnFrame(Uid textFrame);
    Uid textColumn(Uid textFrame, int column);
    Uid frameOfMultiColumn(Uid multiColumn) const;
    Uid frameOfTextColumn(Uid column) const;
    /// The border counts an object of its own between a story and an item that stands in its text.
    Uid anchoredObject(Uid item);
    Uid itemOfAnchoredObject(Uid anchored) const;
    /// The first story whose text holds the item; 0 for none.
    Uid storyHolding(Uid item) const;

    /// The story's frames from the first to the last; empty for a story without one. A thread that runs in a circle
    /// ends before its first repetition. The reference stays good until threads change.
    const std::vector<Uid>& framesOfStory(Uid storyUid) const;
    /// Frames changed their thread or story: forget what framesOfStory remembered.
    void threadsChanged() { threadsKnown_ = false; }

    // Formats: equal ones share an id; id 0 is the format without styles and overrides. The root styles count as no
    // style (0). A reference stays good as long as the document.
    CharacterFormatId characterFormatId(const CharacterFormat& format);
    const CharacterFormat& characterFormat(CharacterFormatId id) const { return characterFormats_[id]; }
    ParagraphFormatId paragraphFormatId(const ParagraphFormat& format);
    const ParagraphFormat& paragraphFormat(ParagraphFormatId id) const { return paragraphFormats_[id]; }

    /// The cascade: end of chain, paragraph style chain, paragraph overrides, character style chain, overrides.
    /// The reference stays good as long as the document and its styles stay as they are.
    const ResolvedAttributes& resolved(ParagraphFormatId paragraph, CharacterFormatId character) const;
    /// Styles changed: forget what was resolved.
    void stylesChanged() {
        resolved_.clear();
        ++styleRevision_;
    }
    /// Grows with every stylesChanged().
    uint64_t styleRevision() const { return styleRevision_; }
    /// The style that another is based on, of the same kind; null where there is none.
    const Style* parentOf(const Style& child) const;

    /// Object style chain, then the item's own.
    ItemAttributes itemAttributes(const PageItem& item) const;
    TextFrameOptions frameOptions(const PageItem& item) const;
    FrameFitting frameFitting(const PageItem& item) const;

    /// Inner coordinates of an item to those of its spread (or of the outermost item, inside a story).
    Matrix toSpread(const PageItem& item) const;

    /// The page of the item's spread that holds the middle of its bounds, else the nearest; 0 without one.
    Uid pageOfItem(const PageItem& item) const;

    bool modified = false;

    /// The file's own kept parts, owned by the reader that made the document.
    std::shared_ptr<void> package;

  private:
    struct Entry {
        Kind kind = Kind::None;
        Uid frame = 0;           ///< of a column or an anchored object: the page item it belongs to
        void* object = nullptr;  ///< stands in one of the deques below
    };
    /// What the border counts beside one page item, as far as it was asked for.
    struct BesideItem {
        Uid multiColumn = 0;
        std::vector<Uid> columns;
        Uid anchored = 0;
    };

    Uid newUid(Kind kind, void* object);
    Uid newUidBeside(Kind kind, Uid item);
    void* objectOf(Uid uid, Kind kind) const;
    SpreadLayer& addSpreadLayer(Spread& spread, Uid layer);
    void takeFromContainer(const PageItem& item);
    void standUnder(PageItem& item, Uid spread, Uid layer);
    void unlinkFrame(const PageItem& item);
    void removeBeside(Uid item);
    void findThreads() const;
    std::vector<const Style*> chainOf(const Style* style) const;

    std::vector<Entry> entries_;
    std::deque<Story> storyStore_;
    std::deque<PageItem> itemStore_;
    std::deque<Spread> spreadStore_;
    std::deque<Page> pageStore_;
    std::deque<SpreadLayer> spreadLayerStore_;
    std::deque<Style> styleStore_;
    // Places of removed objects, used again: a merge places and removes a picture for each record.
    std::vector<Story*> freeStories_;
    std::vector<PageItem*> freeItems_;
    std::unordered_map<std::string, Uid> stylesBySelf_;
    std::unordered_map<std::string, Uid> stylesByName_[5];  ///< by StyleKind
    std::unordered_map<std::string, Uid> itemsBySelf_;
    std::unordered_map<Uid, BesideItem> beside_;
    std::deque<CharacterFormat> characterFormats_;
    std::deque<ParagraphFormat> paragraphFormats_;
    std::unordered_multimap<size_t, CharacterFormatId> characterFormatIds_;  ///< by hash of the format
    std::unordered_multimap<size_t, ParagraphFormatId> paragraphFormatIds_;
    mutable std::unordered_map<uint64_t, std::unique_ptr<ResolvedAttributes>> resolved_;
    mutable std::unordered_map<Uid, std::vector<Uid>> threads_;
    mutable bool threadsKnown_ = false;
    uint64_t styleRevision_ = 0;
};

}  // namespace desk
