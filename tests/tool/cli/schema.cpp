#include "schema.h"

#include <algorithm>
#include <regex>
#include <set>

using nlohmann::json;

namespace {

class Validator {
public:
    explicit Validator(json const &document) : m_document(document) {}

    std::string Check(json const &schema, json const &value, std::string const &place) const {
        for (auto const &[keyword, rule] : schema.items()) {
            std::string const why = CheckKeyword(keyword, rule, schema, value, place);
            if (!why.empty()) {
                return why;
            }
        }
        return "";
    }

private:
    static std::string Refused(std::string const &place, std::string const &why) {
        return (place.empty() ? "the document" : place) + ": " + why;
    }

    std::string CheckKeyword(std::string const &keyword, json const &rule, json const &schema,
                             json const &value, std::string const &place) const {
        static const std::set<std::string> notes{"$schema", "title", "description", "$defs"};
        if (notes.count(keyword)) {
            return "";
        }
        if (keyword == "$ref") {
            std::string const name = rule.get<std::string>().substr(std::string("#/$defs/").size());
            return Check(m_document.at("$defs").at(name), value, place);
        }
        if (keyword == "oneOf") {
            return CheckOneOf(rule, value, place);
        }
        if (keyword == "const" || keyword == "enum" || keyword == "type") {
            return CheckValue(keyword, rule, value, place);
        }
        if (keyword == "minimum") {
            return value.get<double>() >= rule.get<double>() ? "" : Refused(place, "too small");
        }
        if (keyword == "pattern") {
            bool const fits =
                std::regex_search(value.get<std::string>(), std::regex(rule.get<std::string>()));
            return fits ? "" : Refused(place, "doesn't match " + rule.dump());
        }
        if (keyword == "items") {
            return CheckItems(rule, value, place);
        }
        if (keyword == "properties" || keyword == "required" || keyword == "additionalProperties") {
            return value.is_object() ? CheckMembers(keyword, rule, schema, value, place) : "";
        }
        return Refused(place, "the schema has an unknown keyword, " + keyword);
    }

    std::string CheckOneOf(json const &choices, json const &value, std::string const &place) const {
        std::string whys;
        auto const fitting = std::count_if(choices.begin(), choices.end(), [&](json const &choice) {
            std::string const why = Check(choice, value, place);
            whys += why.empty() ? "" : "\n  " + why;
            return why.empty();
        });
        return fitting == 1 ? ""
                            : Refused(place, "fits " + std::to_string(fitting) +
                                                 " choices instead of one" + whys);
    }

    static std::string CheckValue(std::string const &keyword, json const &rule, json const &value,
                                  std::string const &place) {
        if (keyword == "const") {
            return value == rule ? "" : Refused(place, "isn't " + rule.dump());
        }
        if (keyword == "enum") {
            bool const fits = std::find(rule.begin(), rule.end(), value) != rule.end();
            return fits ? "" : Refused(place, value.dump() + " is none of " + rule.dump());
        }
        std::string const type = rule.get<std::string>();
        bool const fits =
            (type == "object" && value.is_object()) || (type == "array" && value.is_array()) ||
            (type == "string" && value.is_string()) || (type == "boolean" && value.is_boolean()) ||
            (type == "integer" && value.is_number_integer()) ||
            (type == "number" && value.is_number());
        return fits ? "" : Refused(place, "isn't of type " + type);
    }

    std::string CheckItems(json const &rule, json const &value, std::string const &place) const {
        for (std::size_t i = 0; i < value.size(); ++i) {
            std::string const why = Check(rule, value[i], place + "/" + std::to_string(i));
            if (!why.empty()) {
                return why;
            }
        }
        return "";
    }

    std::string CheckMembers(std::string const &keyword, json const &rule, json const &schema,
                             json const &value, std::string const &place) const {
        if (keyword == "required") {
            for (json const &name : rule) {
                if (!value.contains(name.get<std::string>())) {
                    return Refused(place, "lacks " + name.dump());
                }
            }
            return "";
        }
        json const known = schema.value("properties", json::object());
        for (auto const &[name, member] : value.items()) {
            bool const isKnown = known.contains(name);
            std::string why;
            if (keyword == "properties" && isKnown) {
                why = Check(rule.at(name), member, place + "/" + name);
            } else if (keyword == "additionalProperties" && !isKnown) {
                why = rule.is_boolean() ? (rule.get<bool>() ? "" : Refused(place, "has " + name))
                                        : Check(rule, member, place + "/" + name);
            }
            if (!why.empty()) {
                return why;
            }
        }
        return "";
    }

    json const &m_document;
};

} // namespace

std::string WhyInvalid(json const &document, json const &value) {
    return Validator(document).Check(document, value, "");
}
