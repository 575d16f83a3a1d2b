#pragma once

#include <memory>
#include <new>
#include <string>

#include "companion/error.h"
#include "companion/run.h"
#include "companion/template_facts.h"
#include "desk/desk.h"

namespace companion {

/// A desk with the merge in it and one open template. The constructor throws what the desk throws.
class Workplace {
  public:
    explicit Workplace(const TemplateOptions& options);

    desk::Template& open() { return *open_; }
    /// As the template was before any run.
    const TemplateFacts& facts() const { return facts_; }

  private:
    desk::Desk desk_;
    std::unique_ptr<desk::Template> open_;
    TemplateFacts facts_;
};

/// Runs something of the desk or the plug-in and lets only Error out.
template <class Work>
auto withOneKindOfError(Work work) {
    try {
        return work();
    } catch (const Error&) {
        throw;
    } catch (const desk::InputError& failure) {
        throw Error(failure.what());
    } catch (const std::bad_alloc&) {
        throw Error("there isn't enough memory for this run; split it with --count.");
    } catch (const std::exception& failure) {
        throw Error(std::string("the run failed: ") + failure.what() + ".");
    }
}

}  // namespace companion
