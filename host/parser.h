// The host's command parser: a command is described by descriptors, parsed against them, and read from a specification.
//
// Descriptors are copied when they are added to another one. Names and keywords are compared without regard to case and
// are written out in full. A name that was added twice stays listed twice; looking it up finds the last.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/runtime.h"

class VRIX_DataSource;

// What the numbers in a grammar mean.
struct UPSpecTypes {
  enum class SubComSpec : std::int32_t {
    keywordsOnly = 1,
    valuesThenKeywords = 3,  // an unnamed value list (the export parameter), then keywords
  };
  enum class ParamSpec : std::int32_t {
    nameList = 2,       // names or a string: a list of tokens
    wordOrString = 3,   // one word (one of the allowed ones, where some are named) or one string, also an empty one
    stringOrWord = 4,   // a string literal, or one of the allowed words
    wordList = 5,       // words, each one of the allowed ones
    number = 6,         // a number within the bounds
    integerOrWord = 7,  // a whole number within the bounds, or one of the allowed words
  };
  enum class LowerBdryOptions : std::int32_t { none = 0, inclusive = 1, exclusive = 2 };
  enum class UpperBdryOptions : std::int32_t { none = 0, inclusive = 1, exclusive = 2 };
};

// Whether a value stands in brackets. There is one way.
enum class BracketOptions : std::int32_t { none = 0 };

// What happens to a variable that is named twice in a list. There is one way.
enum class RepeatVarOptions : std::int32_t { refuse = 0 };

// One token of a command.
class HOST_API TokenInfoObj {
 public:
  enum class Kind : std::int32_t { word, quotedString, number, punctuation };

  TokenInfoObj(Kind kind, std::string text, std::int32_t line, std::int32_t column);
  TokenInfoObj(const TokenInfoObj&);
  TokenInfoObj(TokenInfoObj&&) noexcept;
  TokenInfoObj& operator=(const TokenInfoObj&);
  TokenInfoObj& operator=(TokenInfoObj&&) noexcept;
  ~TokenInfoObj();

  // The text as written; of a quoted string what stands between the quotes.
  const std::string& getString() const { return text_; }
  Kind getKind() const { return kind_; }
  // Where it starts in the job, from 1; the column counts characters.
  std::int32_t getLine() const { return line_; }
  std::int32_t getColumn() const { return column_; }

 private:
  std::string text_;
  Kind kind_;
  std::int32_t line_;
  std::int32_t column_;
};

// The tokens of the command that the host is running. The flag says that they are read from the first one.
class HOST_API VRIX_TokenSequence {
 public:
  explicit VRIX_TokenSequence(bool fromStart);
  VRIX_TokenSequence(const VRIX_TokenSequence&) = delete;
  VRIX_TokenSequence& operator=(const VRIX_TokenSequence&) = delete;
  ~VRIX_TokenSequence();

  const std::vector<TokenInfoObj>& tokens() const;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

// One keyword of a subcommand.
class HOST_API ParamDescriptor {
 public:
  ParamDescriptor(std::string_view name, UPSpecTypes::ParamSpec spec, bool required, bool takesValue,
                  BracketOptions brackets);
  ParamDescriptor(const ParamDescriptor&);
  ParamDescriptor& operator=(const ParamDescriptor&) = delete;
  ~ParamDescriptor();

  void addStringValue(std::string_view allowed);
  void setLowerBoundary(double bound, UPSpecTypes::LowerBdryOptions options);
  void setUpperBoundary(double bound, UPSpecTypes::UpperBdryOptions options);

  struct State;
  const State& state() const { return *state_; }

 private:
  std::unique_ptr<State> state_;
};

// One subcommand.
class HOST_API SubComDescriptor {
 public:
  SubComDescriptor(std::string_view name, UPSpecTypes::SubComSpec spec, bool required, bool mayRepeat);
  SubComDescriptor(const SubComDescriptor&);
  SubComDescriptor& operator=(const SubComDescriptor&) = delete;
  ~SubComDescriptor();

  void setExportParamDesc(UPSpecTypes::ParamSpec spec, bool required);
  void addParamDescriptor(const ParamDescriptor& keyword);

  struct State;
  const State& state() const { return *state_; }

 private:
  std::unique_ptr<State> state_;
};

// The grammar of one command.
class HOST_API CommandDescriptor {
 public:
  CommandDescriptor(std::string_view name, std::string_view title);
  CommandDescriptor(const CommandDescriptor&);
  CommandDescriptor& operator=(const CommandDescriptor&) = delete;
  ~CommandDescriptor();

  void addSubComDescriptor(const SubComDescriptor& subcommand);

  struct State;
  const State& state() const { return *state_; }

 private:
  std::unique_ptr<State> state_;
};

// The value of one keyword, or the unnamed values of a subcommand. It belongs to its specification.
class HOST_API ParamObj {
 public:
  ParamObj(std::string_view name, std::vector<TokenInfoObj> values);
  ParamObj(const ParamObj&) = delete;
  ParamObj& operator=(const ParamObj&) = delete;
  ~ParamObj();

  // True when there is one value and it equals the text without regard to case.
  bool isStringValueCase(std::string_view text) const;
  // The one value, and whether it was a quoted string. False (and nothing changed) without a value or with several.
  bool getStringOrLiteral(std::string& value, bool& isQuoted) const;
  // The one value, when it was a quoted string. False (and nothing changed) otherwise.
  bool getLiteral(std::string& value) const;
  // The one value as text, quoted or not; empty when there is none.
  std::string getStringToken() const;
  // All values as upper-case words. False (and nothing changed) when there is nothing that can be read so.
  bool getUpStringList(std::vector<std::string>& words) const;
  // The one value as a whole number. False (and nothing changed) otherwise.
  bool getIntegerValue(std::int32_t& value) const;
  std::vector<TokenInfoObj> getTokenList() const;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

// One subcommand as given. It belongs to its specification.
class HOST_API SubComObj {
 public:
  explicit SubComObj(std::string_view name);
  SubComObj(const SubComObj&) = delete;
  SubComObj& operator=(const SubComObj&) = delete;
  ~SubComObj();

  // The keyword's value, or null when the keyword was not given.
  const ParamObj* getParamObj(std::string_view name) const;
  // The unnamed values, or null when there are none.
  const ParamObj* getExportParamObj() const;

  struct State;
  State& state() { return *state_; }

 private:
  std::unique_ptr<State> state_;
};

// What a command said. Empty until a parser has filled it.
class HOST_API CommandSpec {
 public:
  CommandSpec();
  CommandSpec(const CommandSpec&) = delete;
  CommandSpec& operator=(const CommandSpec&) = delete;
  ~CommandSpec();

  // The subcommand, or null when it was not given. Valid as long as this object.
  const SubComObj* getSubComObj(std::string_view name) const;

  struct State;
  State& state() { return *state_; }

 private:
  std::unique_ptr<State> state_;
};

// Under which names a command's syntax errors are reported, as long as this object lives.
class HOST_API ParserMessage {
 public:
  ParserMessage();
  ParserMessage(const ParserMessage&) = delete;
  ParserMessage& operator=(const ParserMessage&) = delete;
  ~ParserMessage();

  void SetCommandName(std::string_view name);
  void SetProcedureTitle(std::string_view title);

 private:
  struct State;
  std::unique_ptr<State> state_;
};

// Parses the tokens of a command against its grammar into a specification. All three outlive it.
class HOST_API UniversalParser {
 public:
  UniversalParser(const VRIX_TokenSequence& tokens, CommandSpec& spec, const CommandDescriptor& grammar);
  UniversalParser(const UniversalParser&) = delete;
  UniversalParser& operator=(const UniversalParser&) = delete;
  ~UniversalParser();

  // 0 when the command was accepted; anything else: the host has reported the syntax error.
  std::int32_t getCommandSpecifications();

 private:
  struct State;
  std::unique_ptr<State> state_;
};

// A list of variables of a source, as a user writes it: names, A TO B, ALL.
class HOST_API VarSpecObj {
 public:
  // `specification` is a list to begin with (here: empty), `subcommand` is what errors name. The grammar and the source
  // outlive this object. The flag says whether the list may name variables that are still to be made.
  VarSpecObj(std::string_view specification, std::string_view subcommand, const CommandDescriptor& grammar,
             const VRIX_DataSource& source, bool mayBeNew);
  VarSpecObj(const VarSpecObj&) = delete;
  VarSpecObj& operator=(const VarSpecObj&) = delete;
  ~VarSpecObj();

  // True when the tokens are a valid list (an empty one is); false when the host has reported why they are not.
  bool ValidateVariables(const std::vector<TokenInfoObj>& tokens, RepeatVarOptions repeats);
  // The indexes of the last valid list, in the order written. Valid until the next validation.
  const std::vector<std::int32_t>& GetValidVarList() const;

 private:
  struct State;
  std::unique_ptr<State> state_;
};
