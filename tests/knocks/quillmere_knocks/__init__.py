"""What the scenarios of the fault campaign share: numbered tries with seeds, an ear at the devices, the mixer's own cost.

Like the end-to-end tests it runs within a private session only, and stands on their package."""

import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "e2e"))
