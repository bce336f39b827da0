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
    # The tool knows the libraries by their public headers alone.
    Layer(f"{TOOL}/text"),
    Layer(f"{TOOL}/console", [f"{TOOL}/text"]),
    Layer(f"{TOOL}/members", ["include/jobxml", f"{TOOL}/text"]),
    Layer(f"{TOOL}/documents",
          ["include/reportbase", "include/jobxml", f"{TOOL}/text", f"{TOOL}/console", f"{TOOL}/members"]),
    Layer(f"{TOOL}/html", ["include/jobxml", f"{TOOL}/text", f"{TOOL}/members", f"{TOOL}/documents"]),
    Layer(f"{TOOL}/batch", [f"{TOOL}/text", f"{TOOL}/console", f"{TOOL}/documents"]),
    Layer(f"{TOOL}/commands",
          ["include/reportbase", "include/jobxml", f"{TOOL}/text", f"{TOOL}/console", f"{TOOL}/members",
           f"{TOOL}/documents", f"{TOOL}/html", f"{TOOL}/batch"]),
    Layer(f"{TOOL}/pages", ["include/reportbase", f"{TOOL}/documents", f"{TOOL}/commands"]),
    Layer(TOOL, [f"{TOOL}/console", f"{TOOL}/commands"]),
]

# Names no class of the model, in comments or texts either.
NAMES_NO_CLASS = "src/framework"

# Headers of other projects that take seconds to compile, and the only files that include them.
HEAVY = {"nlohmann/": [f"{TOOL}/documents/JsonText.cpp"]}
