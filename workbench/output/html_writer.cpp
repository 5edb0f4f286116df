#include "workbench/output/html_writer.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "workbench/output/date_format.h"
#include "workbench/output/display_text.h"
#include "workbench/output/html_charts.h"
#include "workbench/output/html_parts.h"
#include "workbench/output/html_table.h"
#include "workbench/output/html_text.h"
#include "workbench/output/message_text.h"
#include "workbench/output/moment.h"
#include "workbench/output/phrase.h"
#include "workbench/output/sentences.h"
#include "workbench/output/table_layout.h"

namespace workbench::output {
namespace {

constexpr int longestTitle = 70;  // of what a window or a bookmark shows

// How a table of so many columns stands on paper: upright, across, or with whatever breaks it takes.
constexpr std::int32_t mostUprightColumns = 10;
constexpr std::int32_t mostColumnsAcross = 24;

const char* tableClass(std::int32_t columns) {
  if (columns > mostColumnsAcross) return "table wide widest";
  return columns > mostUprightColumns ? "table wide" : "table";
}

struct Mark {
  std::string_view name;  // of the style
  std::string_view sign;
  std::string_view words;
};

Mark markOf(Verdict verdict) {
  switch (verdict) {
    case Verdict::same:
      return {"same", "=", sentences::same};
    case Verdict::different:
      return {"different", "\xE2\x89\xA0", sentences::different};
    default:
      return {"trouble", "!", sentences::trouble};
  }
}

std::string_view levelClass(int level) {
  if (level == static_cast<int>(BpErrorLevel::note)) return "note";
  return level == static_cast<int>(BpErrorLevel::warning) ? "warning" : "error";
}

// A table of the page, in its layers.
struct ShownTable {
  std::string id;
  std::vector<TableLayout> layouts;  // at least one
};

// What the page shows of a command.
struct Section {
  const Command* command = nullptr;
  std::string id;
  std::string title;
  std::vector<const Item*> sayings;  // messages and notes
  std::vector<ShownTable> tables;

  bool isEmpty() const { return sayings.empty() && tables.empty() && !command->answer; }
};

class Report {
 public:
  Report(std::ostream& out, const Document& document, const TextOptions& options)
      : out_(out), document_(document), options_(options), wording_(options.wording) {
    for (const std::unique_ptr<Command>& command : document.commands) {
      Section section = sectionOf(*command, sections_.size() + 1);
      if (!section.isEmpty()) sections_.push_back(std::move(section));
    }
  }

  void write() {
    out_ << "<!DOCTYPE html>\n";
    const HtmlElement page(out_, "html", {{"lang", wording_.language()}});
    writeHead();
    const HtmlElement body(out_, "body");
    writeHtml(out_, "a", {{"class", "skip"}, {"href", "#results"}}, words(sentences::skip));
    out_ << '\n';
    writeHtmlPatterns(out_);
    writeMasthead();
    {
      const HtmlElement columns(out_, "div", {{"class", "columns"}});
      writeContents();
      writeMain();
    }
    writeFooter();
    // At the end, where all that it adds to is there.
    const HtmlElement script(out_, "script");
    out_ << htmlScript.text;
  }

 private:
  Section sectionOf(const Command& command, std::size_t number) const {
    Section section;
    section.command = &command;
    section.id = fmt::format("c{}", number);
    section.title = command.procedureTitle ? wording_.resolve(*command.procedureTitle) : command.name;
    if (section.title.empty()) section.title = words(sentences::unknownCommand);
    for (const Item& item : command.items) {
      if (const auto* table = std::get_if<std::unique_ptr<Table>>(&item)) {
        addTable(**table, section);
      } else if (!options_.onlyTable) {
        section.sayings.push_back(&item);
      }
    }
    return section;
  }

  void addTable(const Table& table, Section& section) const {
    const auto* key = std::get_if<StringText>(&table.title.held);
    if (options_.onlyTable && (key == nullptr || key->key != *options_.onlyTable)) return;
    ShownTable shownTable{fmt::format("{}-t{}", section.id, section.tables.size() + 1),
                          layoutsOf(table, wording_, pageStyle)};
    if (!shownTable.layouts.empty()) section.tables.push_back(std::move(shownTable));
  }

  std::string words(std::string_view sentence) const { return wording_.resolve(sentence); }

  bool isOfOneCommand() const { return sections_.size() == 1; }
  std::string heading() const { return isOfOneCommand() ? sections_.front().title : words(sentences::results); }
  // The level of the headings within a command's section.
  const char* innerHeading() const { return isOfOneCommand() ? "h2" : "h3"; }

  std::optional<Verdict> verdict() const {
    if (document_.verdict) return document_.verdict;
    return isOfOneCommand() && sections_.front().command->answer
               ? std::optional(sections_.front().command->answer->verdict)
               : std::nullopt;
  }

  void writeHead() {
    const HtmlElement head(out_, "head");
    out_ << "<meta charset=\"utf-8\">\n";
    out_ << fmt::format(
        "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src &#39;none&#39;; style-src &#39;{}&#39;; "
        "script-src &#39;{}&#39;; base-uri &#39;none&#39;; form-action &#39;none&#39;\">\n",
        htmlStyle.hash, htmlScript.hash);
    out_ << "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
            "<meta name=\"color-scheme\" content=\"light dark\">\n";
    std::string title = heading();
    if (const auto found = verdict()) title += ": " + words(markOf(*found).words);
    writeHtml(out_, "title", {}, shortened(visible(title), longestTitle));
    const HtmlElement style(out_, "style");
    out_ << htmlStyle.text;
  }

  void writeMasthead() {
    const HtmlElement header(out_, "header");
    const HtmlElement inner(out_, "div", {{"class", "inner"}});
    writeHtml(out_, "h1", {}, heading());
    if (const auto found = verdict()) writeMark(*found);
    if (isOfOneCommand()) writeAnswer(sections_.front());
    if (sections_.empty()) writeHtml(out_, "p", {{"class", "answer"}}, words(sentences::noResults));
  }

  void writeMark(Verdict verdict) {
    const Mark mark = markOf(verdict);
    const HtmlElement badge(out_, "p", {{"class", fmt::format("verdict {}", mark.name)}});
    writeHtml(out_, "span", {{"class", "sign"}, {"aria-hidden", "true"}}, mark.sign);
    writeHtml(out_, "span", {}, words(mark.words));
  }

  // The clause that says most stands out from those that say the rest.
  void writeAnswer(const Section& section) {
    if (!section.command->answer) return;
    const HtmlElement answer(out_, "p", {{"class", "answer"}});
    const char* element = "strong";
    for (const Phrase& clause : section.command->answer->clauses) {
      if (std::string_view(element) == "span") out_ << "; ";
      writeHtml(out_, element, {}, shownPhrase(clause, wording_));
      element = "span";
    }
  }

  void writeContents() {
    if (sections_.empty()) return;
    const HtmlElement navigation(out_, "nav", {{"aria-labelledby", "contents"}});
    writeHtml(out_, "h2", {{"id", "contents"}}, words(sentences::contents));
    const HtmlElement list(out_, "ul");
    for (const Section& section : sections_) {
      if (isOfOneCommand()) {
        writeLinks(section);
        continue;
      }
      const HtmlElement item(out_, "li");
      writeHtml(out_, "a", {{"href", "#" + section.id}}, section.title);
      if (section.sayings.empty() && section.tables.empty() && section.command->charts.empty()) continue;
      const HtmlElement inner(out_, "ul");
      writeLinks(section);
    }
    writeLink("commands", words(sentences::commands));
  }

  void writeLinks(const Section& section) {
    if (!section.command->charts.empty()) writeLink(section.id + "-pictures", words(sentences::pictures));
    if (!section.sayings.empty()) writeLink(section.id + "-messages", words(sentences::messages));
    for (const ShownTable& table : section.tables) writeLink(table.id, table.layouts.front().title);
  }

  void writeLink(const std::string& id, const std::string& text) {
    const HtmlElement item(out_, "li");
    writeHtml(out_, "a", {{"href", "#" + id}}, text);
  }

  // The words of what the script adds stand here, in the language of the page.
  void writeMain() {
    const HtmlElement main(out_, "main",
                           {{"id", "results"},
                            {"data-copy", words(sentences::copyTable)},
                            {"data-copied", words(sentences::copied)},
                            {"data-not-copied", words(sentences::notCopied)},
                            {"data-filter", words(sentences::filterRows)},
                            {"data-all", words(sentences::allRows)},
                            {"data-shown", words(sentences::rowsShown)}});
    for (const Section& section : sections_) {
      if (isOfOneCommand()) {
        writeSection(section);
        continue;
      }
      const HtmlElement element(out_, "section", {{"class", "command"}});
      writeHtml(out_, "h2", {{"id", section.id}}, section.title);
      writeAnswer(section);
      writeSection(section);
    }
    if (!sections_.empty()) writeCommands();
  }

  void writeSection(const Section& section) {
    if (!section.command->charts.empty()) writePictures(section);
    if (!section.sayings.empty()) writeSayings(section);
    for (const ShownTable& table : section.tables) {
      const TableLayout& first = table.layouts.front();
      const HtmlElement element(out_, "section", {{"class", tableClass(first.headerColumns + first.columns)}});
      writeHtml(out_, innerHeading(), {{"id", table.id}}, first.title);
      for (std::size_t layer = 0; layer < table.layouts.size(); ++layer) {
        const std::string id = layer == 0 ? table.id : fmt::format("{}-l{}", table.id, layer + 1);
        writeHtmlTable(out_, table.layouts[layer], id, table.id, wording_);
      }
    }
  }

  void writePictures(const Section& section) {
    const std::string id = section.id + "-pictures";
    const HtmlElement element(out_, "section", {{"class", "pictures"}});
    writeHtml(out_, innerHeading(), {{"id", id}}, words(sentences::pictures));
    const HtmlElement grid(out_, "div", {{"class", "grid"}});
    for (std::size_t chart = 0; chart < section.command->charts.size(); ++chart) {
      writeHtmlChart(out_, section.command->charts[chart], fmt::format("{}-{}", id, chart + 1), wording_);
    }
  }

  void writeSayings(const Section& section) {
    const HtmlElement element(out_, "section", {{"class", "messages"}});
    writeHtml(out_, innerHeading(), {{"id", section.id + "-messages"}}, words(sentences::messages));
    const HtmlElement list(out_, "ul");
    for (const Item* item : section.sayings) {
      if (const auto* message = std::get_if<Message>(item)) {
        writeSaying(messageLabel(*message, wording_), levelClass(message->level),
                    shown(message->text, wording_, pageStyle));
      } else {
        writeSaying(words(sentences::note), "note", noteSentence(std::get<Note>(*item), wording_, pageStyle));
      }
    }
  }

  void writeSaying(const std::string& label, std::string_view kind, const std::string& text) {
    const HtmlElement item(out_, "li", {{"class", std::string(kind)}});
    writeHtml(out_, "strong", {}, label);
    out_ << ' ';
    writeHtml(out_, "span", {}, text);
  }

  void writeCommands() {
    const HtmlElement element(out_, "section", {{"class", "commands"}});
    writeHtml(out_, "h2", {{"id", "commands"}}, words(sentences::commands));
    const HtmlElement box(out_, "div",
                          {{"class", "scroll"}, {"role", "group"}, {"tabindex", "0"}, {"aria-labelledby", "commands"}});
    const HtmlElement text(out_, "pre");
    const HtmlElement code(out_, "code");
    const char* separator = "";
    for (const std::unique_ptr<Command>& command : document_.commands) {
      out_ << separator << htmlEscaped(command->syntax);
      separator = "\n";
    }
  }

  void writeFooter() {
    const HtmlElement footer(out_, "footer");
    if (!options_.moment) return;
    const HtmlElement made(out_, "p");
    out_ << htmlEscaped(words(sentences::made)) << ' ';
    const std::string machine = dateTimeText(static_cast<double>(options_.moment->seconds), 0).value_or("");
    writeHtml(out_, "time", {{"datetime", machine.empty() ? "" : machine + "Z"}},
              shownMoment(options_.moment->seconds, wording_.language()));
  }

  std::ostream& out_;
  const Document& document_;
  const TextOptions& options_;
  const text::Wording& wording_;
  std::vector<Section> sections_;
};

}  // namespace

void writeHtmlReport(std::ostream& out, const Document& document, const TextOptions& options) {
  Report(out, document, options).write();
}

}  // namespace workbench::output
