"""Which folder may include which: the one table of it, and what it says about an include."""

from dataclasses import dataclass, field

TOOL = "tools/tunerproperties"


@dataclass
class Layer:
    """A folder, and the folders and files that its files may include besides each other."""

    folder: str
    others: list = field(default_factory=list)


# From the bottom up: a folder includes only what is above it in this table, which is below it in the system.
LAYERS = [
    Layer("include/reportbase"),
    Layer("include/tavikappstartup"),
    Layer("include/jobxml", ["include/reportbase"]),
    Layer("src/text"),
    Layer("src/reportbase", ["include/reportbase", "src/text"]),
    Layer("src/tavikappstartup", ["include/tavikappstartup"]),
    # No library includes private headers of another one.
    Layer("src/framework", ["include/reportbase", "include/jobxml/DataObject.h", "include/jobxml/Visit.h", "src/text"]),
    Layer("src/module", ["include/jobxml", "include/tavikappstartup", "src/text"]),
    Layer("src/values", ["include/jobxml", "src/framework", "src/module"]),
    Layer("src/tuner", ["include/jobxml", "src/framework", "src/module"]),
    # The program that writes model.json.
    Layer("src/model", ["include/jobxml", "src/framework", "src/module"]),
    # Documents, above the model, which this library knows by its public headers.
    Layer("include/tunerdocuments", ["include/jobxml"]),
    Layer("src/json", ["src/text"]),
    Layer("src/documents/values", ["include/jobxml", "include/tunerdocuments", "src/text"]),
    Layer("src/documents/paths", ["include/jobxml", "include/tunerdocuments", "src/text", "src/documents/values"]),
    Layer("src/documents/json",
          ["include/jobxml", "include/tunerdocuments", "src/text", "src/json", "src/documents/paths"]),
    Layer("src/documents/forms",
          ["include/reportbase", "include/jobxml", "include/tunerdocuments", "src/text", "src/documents/values",
           "src/documents/json"]),
    Layer("src/documents/xml",
          ["include/reportbase", "include/jobxml", "include/tunerdocuments", "src/text", "src/documents/values"]),
    Layer("src/documents/format",
          ["include/reportbase", "include/jobxml", "include/tunerdocuments", "src/json", "src/documents/values",
           "src/documents/xml"]),
    Layer("src/documents/findings", ["include/jobxml", "include/tunerdocuments", "src/text", "src/json"]),
    Layer("src/documents/lint",
          ["include/reportbase", "include/jobxml", "include/tunerdocuments", "src/text", "src/json", "src/documents/values",
           "src/documents/json", "src/documents/xml"]),
    Layer("src/documents/compare",
          ["include/reportbase", "include/jobxml", "include/tunerdocuments", "src/text", "src/json", "src/documents/values",
           "src/documents/json", "src/documents/xml", "src/documents/findings", "src/documents/lint"]),
    Layer("src/documents/edit",
          ["include/reportbase", "include/jobxml", "include/tunerdocuments", "src/text", "src/json", "src/documents/values",
           "src/documents/json", "src/documents/xml", "src/documents/findings", "src/documents/lint",
           "src/documents/compare"]),
    Layer("src/documents/show", ["include/jobxml", "include/tunerdocuments", "src/text"]),
    Layer("src/documents/resources"),
    Layer("src/documents/html",
          ["include/jobxml", "include/tunerdocuments", "src/text", "src/documents/paths", "src/documents/values",
           "src/documents/resources"]),
    Layer("src/documents/schema", ["include/jobxml", "include/tunerdocuments", "src/text", "src/documents/resources"]),
    # The tool knows the libraries by their public headers alone; it shares the functions for texts and JSON with them.
    Layer(f"{TOOL}/console", ["include/tunerdocuments/DocumentError.h", "src/text"]),
    Layer(f"{TOOL}/files",
          ["include/reportbase", "include/jobxml", "include/tunerdocuments", "src/text", f"{TOOL}/console"]),
    Layer(f"{TOOL}/batch",
          ["include/tunerdocuments", "src/text", "src/json", f"{TOOL}/console", f"{TOOL}/files"]),
    Layer(f"{TOOL}/commands",
          ["include/jobxml", "include/tunerdocuments", "src/text", "src/json", f"{TOOL}/console", f"{TOOL}/files",
           f"{TOOL}/batch"]),
    Layer(f"{TOOL}/pages", ["include/reportbase", "include/tunerdocuments", f"{TOOL}/commands"]),
    Layer(TOOL, [f"{TOOL}/console", f"{TOOL}/commands"]),
]

# Names no class of the model, in comments or texts either.
NAMES_NO_CLASS = "src/framework"

# Headers of other projects that take seconds to compile, and the only files that include them.
HEAVY = {"nlohmann/": ["src/json/JsonText.cpp"]}

# Functions of Qt that differ between its versions, the only files that call them, and what the others call.
AVOIDED = {
    r"(?:\.|->)utf16\(": (["src/text/Utf16.h"], "Utf16::units(); in Qt 6, QString::utf16() may change the text"),
    r"\.to(?:U?Int|U?Short|U?Long|U?LongLong)\(&": ([], "WholeNumber::read(); Qt 6 accepts fewer texts"),
}
