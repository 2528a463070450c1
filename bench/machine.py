"""A recorded server with eight ports on two cards, two of them a team that carries two VLANs."""

MODES = ["10baseT/Full", "100baseT/Full", "1000baseT/Full", "Autoneg", "TP"]
PORTS, CARD = 8, 4
TEAM, MEMBERS, ALONE = "bond0", ("eth0", "eth1"), "eth2"
TEAM_INDEX = 20
AGGREGATOR = {"id": 1, "ports": len(MEMBERS), "actorKey": 9, "partnerKey": 1003, "partner": "00:1c:73:00:00:01"}
LACP = {"aggregatorId": 1, "actorState": 61, "partnerState": 61}  # both ends are synchronized


def counters(index):
    return {name: 1000 * index for name in ("rxPackets", "txPackets", "rxBytes", "txBytes")}


def interface(index, name, **more):
    return {"index": index, "name": name, "type": 1, "flags": ["UP", "BROADCAST", "RUNNING", "MULTICAST", "LOWER_UP"],
            "operState": "UP", "carrier": True, "mtu": 1500, "statistics": counters(index), **more}


def port(i):
    device = f"0000:0{1 + i // CARD}:00.{i % CARD}"
    address = f"00:1b:21:00:00:{i:02x}"
    return interface(
        2 + i, f"eth{i}", address=address, permanentAddress=address, parentBus="pci", parentDevice=device,
        ethtool={"supported": MODES, "advertised": MODES, "autonegotiation": True, "media": 0, "linkDetected": True,
                 "speed": 1000, "fullDuplex": True, "mac": {"alignmentErrors": 0, "fcsErrors": 0, "transmitErrors": 0,
                                                            "receiveErrors": 0}},
        hardware={"bus": "pci", "device": device, "pci": device, "vendorName": "Vendor", "deviceName": "Gigabit Adapter",
                  "slot": 1 + i // CARD, "slotKind": 5},
        driver={"name": "driver", "version": "1.0", "firmwareVersion": "2.0"})


def running():
    links = [port(i) for i in range(PORTS)]
    for member in links[:len(MEMBERS)]:
        member["flags"].append("SLAVE")
        member.update(masterIndex=TEAM_INDEX, bondMember={"state": 0, "miiStatus": 0, **LACP,
                                                          "permanentAddress": member["permanentAddress"]})
    links.append(interface(TEAM_INDEX, TEAM, kind="bond", address=links[0]["address"],
                           bond={"mode": 4, "aggregator": AGGREGATOR}))
    links += [interface(TEAM_INDEX + vlan, f"{TEAM}.{vlan}", kind="vlan", vlanId=vlan, lowerIndex=TEAM_INDEX)
              for vlan in (1, 2)]
    addresses = [{"index": link["index"], "address": f"10.0.{link['index']}.1", "prefixLength": 24, "flags": 128}
                 for link in links if "masterIndex" not in link]
    routes = [{"index": TEAM_INDEX, "gateway": f"10.0.{TEAM_INDEX}.254", "table": 254}]
    return {"format": "zeb-host-snapshot", "version": 1, "links": links, "addresses": addresses, "routes": routes}


def without_cables():
    """Those of the team and of one port are pulled."""
    machine = running()
    for link in machine["links"]:
        if link["name"] in MEMBERS + (ALONE, TEAM) or link.get("lowerIndex") == TEAM_INDEX:
            link.update(carrier=False, operState="DOWN")
            link["flags"] = [flag for flag in link["flags"] if flag not in ("RUNNING", "LOWER_UP")]
        if "bondMember" in link:
            link["bondMember"]["miiStatus"] = 2
        if link["name"] in MEMBERS + (ALONE,):
            link["ethtool"] = {name: value for name, value in link["ethtool"].items()
                               if name not in ("speed", "fullDuplex")}
            link["ethtool"]["linkDetected"] = False
    return machine


def cables_pulled(hold):
    """A timeline that begins with it; so many seconds later they are back."""
    return {"format": "zeb-host-timeline", "version": 1,
            "steps": [{"at": 0, "snapshot": without_cables()}, {"at": hold, "snapshot": running()}]}
