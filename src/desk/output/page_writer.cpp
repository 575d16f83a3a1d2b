#include "desk/output/page_writer.h"

#include <algorithm>
#include <cmath>

namespace desk {
namespace {

/// Shorter content is repeated on the page: naming a form and listing it costs as much.
constexpr size_t worthAForm = 96;

/// Forms of a template page that are remembered beyond those in use.
constexpr size_t rememberedForms = 32;

constexpr uint32_t longestWait = 1u << 20;

/// PDF readers take no larger page (200 inches), and none without area.
constexpr double largestSide = 14400;

void appendBox(ContentBuffer& out, std::string_view name, const Rect& box) {
    out.append(name).append('[').number(box.left).append(' ').number(box.top).append(' ');
    out.number(box.right).append(' ').number(box.bottom).append(']');
}

/// A rectangle of the spread in the coordinates of PDF.
Rect inPdf(const Rect& rect, const Rect& media) {
    return {rect.left - media.left, media.bottom - rect.bottom, rect.right - media.left, media.bottom - rect.top};
}

}  // namespace

PageWriter::Template& PageWriter::templateOf(const Page& page) {
    Template& found = templates_[page.uid];
    const PageBoxes boxes = boxesOf(document_, page);
    if (found.sets > 0 && found.boxes == boxes) return found;
    const double width = boxes.bleed.width(), height = boxes.bleed.height();
    if (!(width > 0 && height > 0 && width <= largestSide && height <= largestSide))
        throw InputError("Page \"" + page.name + "\" of the document \"" + document_.name +
                         "\" has no usable size. Give it a width and a height of at most 200 inches.");
    found = Template();
    found.boxes = boxes;
    found.sheet.page = page.uid;
    found.sheet.width = width;
    found.sheet.height = height;
    ContentBuffer box;
    appendBox(box, "", {0, 0, width, height});
    found.sheet.boundingBox = box.view();
    ContentBuffer entries;
    appendBox(entries, "/MediaBox", {0, 0, width, height});
    appendBox(entries, "/BleedBox", inPdf(boxes.bleed, boxes.bleed));
    appendBox(entries, "/TrimBox", inPdf(boxes.trim, boxes.bleed));
    found.boxEntries = entries.view();
    return found;
}

void PageWriter::write(Uid uid) {
    const Page* page = document_.page(uid);
    if (!page) throw InputError("The document \"" + document_.name + "\" has no such page.");
    Template& found = templateOf(*page);
    collectItems(document_, *page, shown_);
    updateSlots(found);
    ++found.sets;
    assemble(found);
    writePageObject(found);
    found.looks.nextRound();
}

/// Brings the slots into the order of `shown_`, and each up to date.
void PageWriter::updateSlots(Template& page) {
    const bool same = std::equal(page.slots.begin(), page.slots.end(), shown_.begin(), shown_.end(),
                                 [](const Slot& slot, const ShownItem& shown) { return slot.shown == shown; });
    if (!same) {
        std::unordered_map<Uid, Slot*> before;
        for (Slot& slot : page.slots) before[slot.shown.item] = &slot;
        std::vector<Slot> slots(shown_.size());
        for (size_t i = 0; i < shown_.size(); ++i) {
            const auto known = before.find(shown_[i].item);
            if (known != before.end() && known->second->shown == shown_[i]) slots[i] = std::move(*known->second);
            slots[i].shown = shown_[i];
        }
        page.slots = std::move(slots);
    }
    for (Slot& slot : page.slots) updateSlot(page, slot);
}

void PageWriter::updateSlot(Template& page, Slot& slot) {
    const PageItem* item = document_.item(slot.shown.item);
    if (!item) return;
    const Matrix spreadToSheet = Matrix::translation(-page.boxes.bleed.left, -page.boxes.bleed.top);
    const Matrix toSheet = spreadToSheet.after(slot.shown.toSpread).after(item->transform);
    signature_.clear();
    items_.appendSignature(*item, toSheet, page.sheet, page.looks, signature_);
    if (slot.version != 0 && slot.signature == signature_) {
        if (slot.stableFor < longestWait) ++slot.stableFor;
        return;
    }
    if (slot.stableFor >= slot.wanted && slot.wanted < longestWait) slot.wanted *= 2;
    slot.stableFor = 0;
    slot.signature = signature_;
    slot.version = ++lastVersion_;
    slot.content.clear();
    items_.paint(*item, toSheet, page.sheet, page.looks, slot.content);
}

/// One past the last of the slots from `start` on that haven't changed for long enough.
size_t PageWriter::endOfStableRun(const Template& page, size_t start) const {
    size_t end = start;
    while (end < page.slots.size() && page.slots[end].stableFor >= page.slots[end].wanted) ++end;
    return end;
}

void PageWriter::assemble(Template& page) {
    content_.clear();
    for (size_t start = 0; start < page.slots.size();) {
        const size_t end = endOfStableRun(page, start);
        size_t bytes = 0;
        for (size_t i = start; i < end; ++i) bytes += page.slots[i].content.bytes.size();
        if (bytes >= worthAForm) {
            const Resource& form = formOf(page, start, end);
            appendName(content_.bytes, form);
            content_.bytes.append(" Do\n");
            content_.resources.add(form);
            for (size_t i = start; i < end; ++i)
                content_.resources.blends = content_.resources.blends || page.slots[i].content.resources.blends;
            start = end;
        } else {
            const size_t last = std::max(end, start + 1);
            for (; start < last; ++start) content_.add(page.slots[start].content);
        }
    }
}

const Resource& PageWriter::formOf(Template& page, size_t start, size_t end) {
    const auto holds = [&](const Form& form) {
        return std::equal(form.versions.begin(), form.versions.end(), page.slots.begin() + static_cast<long>(start),
                          page.slots.begin() + static_cast<long>(end),
                          [](uint64_t version, const Slot& slot) { return version == slot.version; });
    };
    const auto known = std::find_if(page.forms.begin(), page.forms.end(), holds);
    if (known != page.forms.end()) {
        known->lastUsed = page.sets;
        return known->resource;
    }
    if (page.forms.size() >= rememberedForms)
        std::erase_if(page.forms, [&](const Form& form) { return form.lastUsed + 1 < page.sets; });
    Form form;
    Fragment content;
    for (size_t i = start; i < end; ++i) {
        form.versions.push_back(page.slots[i].version);
        content.add(page.slots[i].content);
    }
    form.resource = shared_.writeForm(content, page.sheet.boundingBox, SharedObjects::Group::None);
    form.lastUsed = page.sets;
    return page.forms.emplace_back(std::move(form)).resource;
}

void PageWriter::writePageObject(const Template& page) {
    PdfFile& file = shared_.file();
    const ObjectNumber contents = file.allocate();
    const ObjectNumber number = file.allocate();
    file.writeStream(contents, "", content_.bytes.view());
    object_.clear();
    object_.append("<</Type/Page/Parent ").integer(tree_.add(number)).append(" 0 R").append(page.boxEntries);
    if (content_.resources.blends) object_.append("/Group<</S/Transparency/CS/DeviceCMYK>>");
    object_.append("/Resources");
    content_.resources.appendDictionary(object_);
    object_.append("/Contents ").integer(contents).append(" 0 R>>");
    file.writeObject(number, object_.view());
}

}  // namespace desk
