"""A client of a message bus: what the measurements need of the protocol."""
import os
import select
import socket
import struct

BUS = ("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus")
DAEMON = "com.kestrelix.ozna.scheduler"
DAEMON_OBJECT = (DAEMON, "/com/kestrelix/ozna/scheduler/schedulerobj", "com.kestrelix.ozna.schedulerinterface")
PATIENCE_S = 300
REPLIES = (2, 3)  # a result, an error


def text(value):
    data = value.encode()
    return struct.pack("<I", len(data)) + data + b"\0"


def padded(data, size):
    return data + b"\0" * (-len(data) % size)


def call(serial, target, method, argument=None):
    """A method call with no argument, or with one string."""
    service, path, interface = target
    fields = b""
    for code, kind, value in ((1, b"o", path), (2, b"s", interface), (3, b"s", method), (6, b"s", service)):
        fields = padded(fields, 8) + struct.pack("<BB", code, 1) + kind + b"\0" + text(value)
    if argument is not None:
        fields = padded(fields, 8) + b"\x08\x01g\0\x01s\0"
    body = text(argument) if argument is not None else b""
    header = struct.pack("<cBBBIII", b"l", 1, 0, 1, len(body), serial, len(fields)) + fields
    return padded(header, 8) + body


class Client:
    def __init__(self, path):
        self.serial = 0
        self.received = b""
        self.socket = socket.socket(socket.AF_UNIX)
        self.socket.settimeout(PATIENCE_S)
        self.socket.connect(path)
        self.socket.sendall(b"\0AUTH EXTERNAL " + str(os.getuid()).encode().hex().encode() + b"\r\n")
        while not self.received.endswith(b"\r\n"):
            self.received += self.socket.recv(1000)
        self.received = b""
        self.socket.sendall(b"BEGIN\r\n")
        self.ask(BUS, "Hello")

    def send(self, target, method, argument=None):
        self.serial += 1
        self.socket.sendall(call(self.serial, target, method, argument))

    def messages(self):
        """Those that have come whole, as their type and their bytes."""
        while len(self.received) >= 16:
            kind = self.received[1]
            body, _, fields = struct.unpack_from("<III", self.received, 4)
            size = 16 + fields + -fields % 8 + body
            if len(self.received) < size:
                return
            message, self.received = self.received[:size], self.received[size:]
            yield kind, message

    def receive(self):
        data = self.socket.recv(65536)
        if not data:
            raise ConnectionError("the bus is gone")
        self.received += data

    def ask(self, target, method, argument=None):
        """Returns when the answer is there."""
        self.send(target, method, argument)
        while not any(kind in REPLIES for kind, _ in self.messages()):
            self.receive()

    def ask_daemon(self):
        self.ask(DAEMON_OBJECT, "IsEnabled")

    def watch(self, name):
        """What wait_for waits for is noticed from now on."""
        self.ask(BUS, "AddMatch", f"type='signal',sender='{BUS[0]}',member='NameOwnerChanged',arg0='{name}'")

    def wait_for(self, name):
        while not any(text(name) in message and b"NameOwnerChanged" in message for _, message in self.messages()):
            self.receive()

    def close(self):
        self.socket.close()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()


def crowd(path, size):
    """Has so many clients call the daemon, each anew as soon as it is answered; never returns."""
    clients = {}
    for _ in range(size):
        client = Client(path)
        clients[client.socket.fileno()] = client
    poll = select.poll()
    for number, client in clients.items():
        poll.register(number, select.POLLIN)
        client.send(DAEMON_OBJECT, "IsEnabled")
    while True:
        for number, _ in poll.poll():
            client = clients[number]
            client.receive()
            for kind, _ in client.messages():
                if kind in REPLIES:
                    client.send(DAEMON_OBJECT, "IsEnabled")
