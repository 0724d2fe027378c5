"""The journal of what was found, the list of what cannot be seen, and the table of both."""
import collections
import json
import os
import re

COUNTED = ("killed", "timed out", "survived")


class Journal:
    def __init__(self, path):
        self.path, self.entries = path, {}
        if os.path.exists(path):
            with open(path, encoding="utf-8") as file:
                for line in file:
                    if line.endswith("\n"):  # the last one may have been cut
                        entry = json.loads(line)
                        self.entries[entry["id"]] = entry

    def add(self, entry):
        self.entries[entry["id"]] = entry
        with open(self.path, "a", encoding="utf-8") as file:
            file.write(json.dumps(entry) + "\n")


def squeezed(text):
    return " ".join(text.split())


class Explained:
    """Changes that no test can see, each with its reason. An entry is a file, the lines of the original behind `- `,
    what becomes of them behind `+ `, and the reason; an empty line ends it."""

    def __init__(self, path, texts):
        self.reasons, self.stale = {}, []
        if not os.path.exists(path):
            return
        with open(path, encoding="utf-8") as file:
            blocks = re.split(r"\n\s*\n", file.read())
        for block in blocks:
            lines = [line for line in block.split("\n") if line.strip() and not line.startswith("#")]
            if not lines:
                continue
            before = squeezed(" ".join(line[2:] for line in lines[1:] if line.startswith("- ")))
            after = squeezed(" ".join(line[1:] for line in lines[1:] if line.startswith("+")))
            reason = " ".join(line.strip() for line in lines[1:] if line[0] not in "-+")
            if not (before and reason):
                raise SystemExit(f"{path}: an entry without lines or without a reason: {lines[0]}")
            if before not in squeezed(texts.get(lines[0], "")):
                self.stale.append(f"{lines[0]}: {before}")
            self.reasons[lines[0], before, after] = reason

    def reason(self, entry):
        return self.reasons.get((entry["path"], squeezed(entry["before"]), squeezed(entry["after"])))


def room_of(entry):
    return os.path.dirname(entry["path"]).replace("/src/", "/")


def tell(entries, explained):
    """Prints the table and the survivors. 0 if at least 95 % of what can be seen was seen."""
    rows = collections.defaultdict(collections.Counter)
    survivors, by_digests = [], 0
    for entry in entries:
        verdict = entry["verdict"]
        if verdict == "survived" and explained.reason(entry):
            verdict = "explained"
        if verdict == "survived":
            survivors.append(entry)
        by_digests += entry["by"].startswith("digests") and verdict == "killed"
        for row in (room_of(entry), "all"):
            rows[row][verdict] += 1
    columns = ("killed", "timed out", "survived", "explained", "equivalent", "invalid")
    print(f"\n{'room':34s}" + "".join(f"{c:>11s}" for c in columns) + "   seen")

    def share(row):
        seen = row["killed"] + row["timed out"]
        return 100 * seen / max(1, seen + row["survived"])

    for room in sorted(rows, key=lambda r: (r == "all", r)):
        row = rows[room]
        print(f"{room:34s}" + "".join(f"{row[c]:11d}" for c in columns) + f"{share(row):6.1f} %")
    print(f"\n{by_digests} of the killed were seen by the digests alone")
    for entry in survivors:
        print(f"\n{entry['path']}:{entry['line']} ({entry['kind']}, {entry['build']}, {entry['id']})")
        for mark, text in (("-", entry["before"]), ("+", entry["after"])):
            for line in text.split("\n"):
                print(f"{mark} {line.strip()}")
    for line in explained.stale:
        print(f"stands in equivalent.txt and no longer in the sources: {line}")
    return 0 if rows["all"]["survived"] == 0 or share(rows["all"]) >= 95 else 1
