"""What the end-to-end tests, the tour and the benchmarks share: players, recordings, the graph, the driver program.

Everything here runs within a private session (scripts/private-session) and refuses to run anywhere else."""

import os

if os.environ.get("QUILLMERE_PRIVATE_SESSION") != "1":
    raise RuntimeError("run this through scripts/private-session: it starts players and restarts daemons")
