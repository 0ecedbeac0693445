"""Prints an SPDX document of a release: its packages with their checksums, and what others wrote that is inside them.

Usage: sbom.py VERSION SECONDS FOLDER
"""

import hashlib
import json
import subprocess
import sys
from datetime import UTC, datetime
from pathlib import Path
from typing import Any

ROOT = Path(__file__).resolve().parent.parent

# Where what others wrote is inside: in the Windows programs, in whatever has the command line, and in whatever has the
# WebAssembly module, with the studio around it or alone.
WINDOWS = ("orvex-*-setup.exe", "orvex-*-windows.zip")
COMMAND_LINE = (*WINDOWS, "orvex_*.deb")
STUDIO = (*COMMAND_LINE, "orvex-site-*.tgz", "orvex-*.whl", "orvex-*.tar.gz")
MODULE = (*STUDIO, "orvex-[0-9]*.tgz")

# What is compiled into packages, with its licence; the rest of what they need their systems install. Each is told by
# the Debian package that has it, or by its name in web/package-lock.json or python/requirements.txt.
DEBIAN = {
    "libcli11-dev": ("CLI11", "BSD-3-Clause", COMMAND_LINE),
    "libfmt-dev": ("fmt", "MIT", MODULE),
    "nlohmann-json3-dev": ("nlohmann-json", "MIT", MODULE),
    "libz-mingw-w64-dev": ("zlib", "Zlib", WINDOWS),
    "g++-mingw-w64-x86-64-posix": ("libstdc++", "GPL-3.0-or-later WITH GCC-exception-3.1", WINDOWS),
    "emscripten": ("emscripten", "MIT OR NCSA", MODULE),
    "nsis": ("nsis", "Zlib", ("orvex-*-setup.exe",)),
}
NPM = {"lightweight-charts": ("Apache-2.0", STUDIO)}
PYTHON = {"nanobind": ("BSD-3-Clause", ("orvex-*.whl",))}


def debian_version(name: str) -> str:
    query = ["dpkg-query", "-W", "-f", "${Version}", name]
    return subprocess.run(query, capture_output=True, text=True, check=True).stdout


def npm_version(name: str) -> str:
    lock = json.loads((ROOT / "web/package-lock.json").read_text())
    return str(lock["packages"][f"node_modules/{name}"]["version"])


def python_version(name: str) -> str:
    for line in (ROOT / "python/requirements.txt").read_text().splitlines():
        if line.startswith(f"{name}=="):
            return line.removeprefix(f"{name}==").split()[0]
    raise SystemExit(f"python/requirements.txt does not have {name}")


def package(identifier: str, name: str, version: str, licence: str) -> dict[str, Any]:
    return {
        "SPDXID": f"SPDXRef-{identifier}",
        "name": name,
        "versionInfo": version,
        "downloadLocation": "NOASSERTION",
        "filesAnalyzed": False,
        "licenseConcluded": licence,
        "licenseDeclared": licence,
        "copyrightText": "NOASSERTION",
    }


def main(version: str, seconds: str, folder: str) -> None:
    made = sorted(path for path in Path(folder).iterdir() if path.is_file())
    parts = [
        *((name, debian_version(source), licence, inside) for source, (name, licence, inside) in DEBIAN.items()),
        *((name, npm_version(name), licence, inside) for name, (licence, inside) in NPM.items()),
        *((name, python_version(name), licence, inside) for name, (licence, inside) in PYTHON.items()),
    ]
    packages, relationships = [], []
    for name, number, licence, _ in parts:
        packages.append(package(f"part-{name.replace('+', 'x')}", name, number, licence))
    for place, path in enumerate(made):
        identifier = f"package-{place}"
        described = package(identifier, path.name, version, "MIT")
        described["packageFileName"] = path.name
        described["checksums"] = [
            {"algorithm": "SHA256", "checksumValue": hashlib.sha256(path.read_bytes()).hexdigest()}
        ]
        packages.append(described)
        relationships.append(("SPDXRef-DOCUMENT", "DESCRIBES", f"SPDXRef-{identifier}"))
        for name, _, _, inside in parts:
            if any(path.match(pattern) for pattern in inside):
                relationships.append((f"SPDXRef-{identifier}", "CONTAINS", f"SPDXRef-part-{name.replace('+', 'x')}"))
    digest = hashlib.sha256(json.dumps(packages, sort_keys=True).encode()).hexdigest()
    document = {
        "spdxVersion": "SPDX-2.3",
        "dataLicense": "CC0-1.0",
        "SPDXID": "SPDXRef-DOCUMENT",
        "name": f"orvex-{version}",
        "documentNamespace": f"https://orvex.example/spdx/{version}/{digest}",
        "creationInfo": {
            "created": datetime.fromtimestamp(int(seconds), UTC).strftime("%Y-%m-%dT%H:%M:%SZ"),
            "creators": ["Organization: The Orvex authors", "Tool: packaging/sbom.py"],
        },
        "packages": packages,
        "relationships": [
            {"spdxElementId": one, "relationshipType": kind, "relatedSpdxElement": other}
            for one, kind, other in relationships
        ],
    }
    print(json.dumps(document, indent=1))


if __name__ == "__main__":
    main(*sys.argv[1:])
