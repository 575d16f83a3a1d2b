#pragma once
// Fill and stroke of a page item.

#include <functional>
#include <set>

#include "desk/output/gradient.h"
#include "desk/output/outline.h"

namespace desk {

/// What was drawn simpler than the document asks, each once, in the order met.
class Simplifications {
  public:
    void add(const std::string& what) {
        if (known_.insert(what).second) told_.push_back(what);
    }
    const std::vector<std::string>& told() const { return told_; }

  private:
    std::set<std::string> known_;
    std::vector<std::string> told_;
};

/// What an item paints below and above its content.
struct ShapeContent {
    Fragment below;      ///< fill
    Fragment above;      ///< stroke and line ends
    ContentBuffer clip;  ///< path of the frame with "W n"; empty when there is no area
};

/// Whether something stands between the fill and the stroke.
enum class ShapeHolds { Nothing, Content };

class ShapePainter {
  public:
    ShapePainter(const Document& document, Palette& palette, SharedObjects& shared, Simplifications& simplifications)
        : document_(document), palette_(palette), shared_(shared), simplifications_(simplifications) {}

    /// `toPdf` maps the item's inner coordinates to those of the page, y upwards.
    void paint(const Path& path, const ItemAttributes& attributes, const Matrix& toPdf, ShapeHolds holds,
               ShapeContent& content);

    /// Sets a colour for filling or stroking, a gradient as it lies over the place.
    enum class Use { Fill, Stroke };
    void setColour(Fragment& out, const Paint& paint, Use use, const GradientPlace& place);

    Simplifications& simplifications() { return simplifications_; }

    /// A graphics state dictionary's text as a resource, set by "gs".
    void setState(Fragment& out, std::string_view dictionary);

  private:
    struct Stroke;
    Stroke strokeOf(const ItemAttributes& attributes, const GradientPlace& place);
    void paintStroke(const Path& outline, const ItemAttributes& attributes, const Stroke& stroke, const Matrix& toPdf,
                     Fragment& out);
    void clipToSide(const Path& path, const Stroke& stroke, const Matrix& toPdf, Fragment& out);
    void strokePath(const Path& path, const Stroke& stroke, const Matrix& toPdf, Fragment& out);
    void appendStrokeLook(const Stroke& stroke, double scale, Fragment& out);
    std::vector<double> dashesOf(const ItemAttributes& attributes, double weight, bool& round);

    const Document& document_;
    Palette& palette_;
    SharedObjects& shared_;
    Simplifications& simplifications_;
};

}  // namespace desk
