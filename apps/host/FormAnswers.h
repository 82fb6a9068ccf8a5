#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "host/Answers.h"
#include "host/PageModel.h"
#include "varnel_xml_creation/platform/dom/Document.h"

// The answers of a form, as its page asks for them. `lngMost` is the most rows that a table may
// have.

/// The name of a cell's input, as `cellNameOf` gives it; `fieldNameOf` gives that of a question's.
std::string cellName(const Question& table, const Input& column, std::int64_t lngRow);

/// How many rows a table has. A dynamic one has as many as the answers say, and at least as the
/// last one that has a cell; more than `lngMost` is told as `lngMost + 1`.
std::int64_t rowCount(const Question& table, const Answers& answers, std::int64_t lngMost);

/// How many columns the widest dynamic table has.
std::int64_t mostColumns(const PageModel& page);

/// How many cells the answers give all dynamic tables together.
std::int64_t cellCount(const PageModel& page, const Answers& answers, std::int64_t lngMost);

/// The version that the page was made from which posted these answers; 0 when they do not tell.
std::int64_t postedVersion(const Answers& answers);

/// Adds what is the host's to say: fixed hidden fields, labels, the number of rows.
void completeAnswers(const PageModel& page, Answers& answers, std::int64_t lngMost);

/// Whether what people can answer is the same in both.
bool sameAnswers(const PageModel& page, const Answers& left, const Answers& right,
                 std::int64_t lngMost);

/// Takes over what was computed when the form was parked, which no page posts.
void takeComputed(const PageModel& page, const Varnel_Tolv_XML_Creation::Document& objPark,
                  Answers& answers);

/// Takes a row away; those behind it move up.
void removeRow(const Question& table, std::int64_t lngRow, std::int64_t lngCount, Answers& answers);

/// The row counts of the dynamic tables, which a parked form does not tell, as text to be kept.
std::string rowCountsOf(const PageModel& page, const Answers& answers, std::int64_t lngMost);

/// The answers in a parked form, and the row counts that were kept beside it. A hidden field has
/// the name of its output behind `kHiddenPrefix`.
Answers answersIn(const std::string& strParkXml, const std::string& strRowCounts);

// No input has such a name: it is none of those that a page asks the library to read.
constexpr std::string_view kHiddenPrefix = "hdnfld:";
