#include "cli/authoring_command_line.h"

#include <CLI/CLI.hpp>
#include <charconv>

#include "cli/exit_status.h"

namespace cli {
namespace {

const char* const keptHelp =
    "The template is written as IDML with this one change; everything else in it stays as it was. \"vornaset info\" "
    "lists frames and stories with their ids.\n\n";

/// FRAME=N or FRAME=N:COLUMN. A frame's name may hold "=", so the last one before the number counts.
companion::FrameAssignment assignmentOf(const std::string& text) {
    const auto fail = [&]() -> companion::FrameAssignment {
        throw UsageError("\"" + text + "\" says no frame number; say FRAME=N or FRAME=N:COLUMN, like u104=2:photo.");
    };
    companion::FrameAssignment assignment;
    for (std::size_t equals = text.find('='); equals != text.npos; equals = text.find('=', equals + 1)) {
        const char* const begin = text.data() + equals + 1;
        const char* const end = text.data() + text.size();
        constexpr std::int64_t most = 2147483647;
        const auto [stop, error] = std::from_chars(begin, end, assignment.number);
        const bool isNumber = error == std::errc() && stop != begin && (stop == end || *stop == ':');
        if (!isNumber || assignment.number < 0 || assignment.number > most || equals == 0) continue;
        assignment.frame = text.substr(0, equals);
        assignment.hasColumn = stop != end;
        if (assignment.hasColumn) assignment.column.assign(stop + 1, end);
        return assignment;
    }
    return fail();
}

companion::PlaceholderPlace placeOf(const std::string& text) {
    const std::size_t colon = text.rfind(':');
    companion::PlaceholderPlace place;
    if (colon != text.npos && colon > 0) {
        const char* const begin = text.data() + colon + 1;
        const char* const end = text.data() + text.size();
        const auto [stop, error] = std::from_chars(begin, end, place.position);
        if (error == std::errc() && stop == end && stop != begin) {
            place.story = text.substr(0, colon);
            return place;
        }
    }
    throw UsageError("\"" + text + "\" says no place in a story; say STORY:POSITION, like u10a:0.");
}

}  // namespace

CLI::App& AuthoringArguments::declareCommand(CLI::App& program, const char* name, const char* description,
                                             const std::string& footer) {
    CLI::App& command = *program.add_subcommand(name, description);
    command.set_help_flag("-h,--help", "Print this help and end");
    command.footer(keptHelp + footer + "\n\n" + exitStatusHelp);
    command.add_option("TEMPLATE", openTemplate_.path, "The template, an IDML file")->required()->type_name("");
    return command;
}

void AuthoringArguments::declareOutput(CLI::App& command) {
    command
        .add_option("-o,--output", outputPath_,
                    "The IDML file to write. Default: the template itself is replaced. Example: -o new.idml")
        ->type_name("OUT.idml");
}

void AuthoringArguments::declare(CLI::App& program) {
    number_ = &declareCommand(
        program, "number", "Write frame numbers, and the columns that feed frames of pictures, into a template.",
        "N is the place of a record within a page set, from 1; 0 makes the frame static. COLUMN "
        "names the data column with the pictures or codes; an empty one takes the column away.\n\n"
        "Example:\n  vornaset number labels.idml u104=1 u105=1:photo u106=2 -o numbered.idml");
    number_->add_option("FRAMES", assignments_, "FRAME=N or FRAME=N:COLUMN, by id or by the frame's own name")
        ->required()
        ->type_name("");
    number_->add_option("-o,--output", outputPath_, "The IDML file to write. Example: -o new.idml")
        ->required()
        ->type_name("OUT.idml");

    placeholder_ =
        &declareCommand(program, "placeholder", "Insert a placeholder into a story, in the format of its place.",
                        "A first frame of the story without number gets number 1.\n\nExamples:\n  vornaset "
                        "placeholder letter.idml u10a:0 Title --space -o titled.idml\n  vornaset placeholder "
                        "letter.idml u10a:12 City");
    placeholder_->add_option("STORY:POSITION", place_, "The story's id and the position in it, in UTF-16 units from 0")
        ->required()
        ->type_name("");
    placeholder_->add_option("KEY", key_, "The column that it shows")->required()->type_name("");
    placeholder_->add_flag("--space", withSpace_,
                           "A space stands behind a value that isn't empty. Default: no space. Gives <<KEY >>");
    declareOutput(*placeholder_);

    omr_ =
        &declareCommand(program, "omr",
                        "Add the OMR frame: 10.2 by 22.479 mm, 3 mm from the left and 9 mm below the top of the first "
                        "spread's pages, number 1.",
                        "Example:\n  vornaset omr letter.idml -o marked.idml");
    declareOutput(*omr_);

    strip_ =
        &declareCommand(program, "strip-static", "Remove every frame that has no number.",
                        "Groups go as a whole; frames that stand in text stay.\n\nExample:\n  vornaset strip-static "
                        "letter.idml -o bare.idml");
    declareOutput(*strip_);
}

bool AuthoringArguments::parsed() const {
    return number_->parsed() || placeholder_->parsed() || omr_->parsed() || strip_->parsed();
}

const CLI::App& AuthoringArguments::commandInUse() const {
    for (const CLI::App* command : {number_, placeholder_, omr_})
        if (command->parsed()) return *command;
    return *strip_;
}

AuthoringCommand AuthoringArguments::read() const {
    AuthoringCommand command;
    command.openTemplate = openTemplate_;
    const bool saysOutput = commandInUse().count("--output") > 0;
    if (saysOutput && outputPath_.empty()) throw UsageError("--output needs a file name.");
    command.outputPath = saysOutput ? outputPath_ : openTemplate_.path;
    if (number_->parsed()) {
        for (const std::string& assignment : assignments_) command.assignments.push_back(assignmentOf(assignment));
        return command;
    }
    command.kind = omr_->parsed() ? AuthoringCommand::Kind::Omr : AuthoringCommand::Kind::StripStatic;
    if (placeholder_->parsed()) {
        command.kind = AuthoringCommand::Kind::Placeholder;
        command.placeholder = placeOf(place_);
        command.placeholder.key = key_;
        command.placeholder.withSpace = withSpace_;
    }
    return command;
}

}  // namespace cli
