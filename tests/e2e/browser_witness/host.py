"""The witness's end of the line to a test: what comes from one of them goes to the other."""

import os
import select
import socket
import sys

with socket.socket(socket.AF_UNIX) as test:
    test.connect(sys.argv[1])
    while True:
        ready, _, _ = select.select([0, test], [], [])
        piece = os.read(0, 65536) if 0 in ready else test.recv(65536)
        if not piece:
            break
        if 0 in ready:
            test.sendall(piece)
        else:
            os.write(1, piece)
