# SPDX-License-Identifier: Apache-2.0
"""What is installed holds a library to begin with, whole and with something of each kind that the program speaks of."""

import os
import subprocess


def output_of(*command):
    return subprocess.run(command, capture_output=True, text=True)


def test_install_a_whole_sample_library(tmp_path):
    build = os.environ["KX_BUILD"]
    result = output_of("cmake", "--install", f"{build}/Apps/AssetManager", "--prefix", tmp_path)
    assert result.returncode == 0, result.stderr

    library = tmp_path / "share/kxassets/sample-library"
    verified = output_of(os.environ["KXASSETS"], "verify", library)
    models = output_of(os.environ["KXASSETS"], "list", "--library", library, "--category", "Geometries")

    assert verified.returncode == 0, verified.stdout
    assert "2CylinderEngine" in models.stdout
    assert (library / "Wood/MAT_Oiled Oak/Oiled Oak.osb").is_file()
