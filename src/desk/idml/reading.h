#pragma once
// What the readers of the parts share: the document being filled, the package it comes from, the part being read, and
// the references that can be followed only when every part is read.

#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "desk/idml/package.h"
#include "desk/idml/xml.h"
#include "desk/model/document.h"

namespace desk {

/// Threads and story of a text frame, by the ids of the package.
struct FrameLinks {
    Uid frame = 0;
    std::string story, previous, next;
    std::string member;  ///< where the frame stands, for messages
    int line = 0;
};

struct SectionStart {
    std::string page;  ///< id of its first page
    std::string marker;
};

struct Reading {
    Reading(Document& filled, Package& source) : document(filled), package(source) {}

    Document& document;
    Package& package;
    std::string member;     ///< the part being read, for messages
    double domVersion = 0;  ///< "16.0" is 16

    std::unordered_map<std::string, Uid> layers;                ///< by id
    std::unordered_map<std::string, Uid> stories;               ///< by id
    std::unordered_map<std::string, std::string> styleIds;      ///< kind and name as written, to id
    std::unordered_map<std::string, std::string> fontFamilies;  ///< id of a family to its name
    std::unordered_map<std::string, bool> conditions;           ///< id to whether its text shows
    std::vector<SectionStart> sections;
    std::vector<FrameLinks> frames;
    std::vector<Uid> readStyles;
    size_t itemCount = 0;

    /// Remembers what was passed over. The same sentence about the same part is kept once.
    void note(const std::string& what);

    /// The exception for what stands on a line of the part being read: file, part and line in front of the sentence.
    InputError failure(int line, const std::string& sentence) const;
    /// The same without a place in a part.
    InputError failure(const std::string& sentence) const;

  private:
    std::set<std::pair<std::string, std::string>> known_;
};

/// Text from outside, fit for one line of a message: cut to a sane length, control characters replaced.
std::string quoted(std::string_view text);

/// Several names quoted and joined for a message; a long list is cut.
std::string quotedList(const std::vector<std::string>& names);

}  // namespace desk
