// Geometry nodes: the typed rings by which the objects of a design hang
// together, and the abstract root of objects that know their geometry.
//
// An object embeds a SYS_GeomNode; nodes form a one-way ring through their
// `root` link, and the walks find the first neighbour of a given type. A node
// owns none of the nodes it links to: nodes leave a ring without being
// destroyed, and a dropped node keeps its own link. A node alone links to
// itself. Type SGN_GEOM_END (6) is a barrier that ExcludeRoot and GetPrevRoot
// do not pass.
//
// Links are the caller's to keep sound, but no walk trusts them blindly:
// every walk stops at a null link, and one that runs into a loop that does
// not lead back to where it should stop ends there as if it had found
// nothing, so no link can make a walk endless or read through null.
//
// SYS_Geometry is the root of objects that can say what kind of geometry
// they are, in the vocabulary of SYS_GeometryType (sys_std_interface.h).
#ifndef TOVIK_SYS_GEOM_NODE_H
#define TOVIK_SYS_GEOM_NODE_H

#include "sys_std_interface.h"
#include "tovik_export.h"

// The kinds of node. 3 and 5 are free for callers: any short value may be
// stored.
enum SGN_Type : short {
  SGN_NONE = 0,       // no type: the node is not valid
  SGN_GEOM_A = 1,     // a geometric node
  SGN_GEOM_B = 2,     // a geometric node
  SGN_DB_ROOT = 4,    // what GetDBRoot looks for
  SGN_GEOM_END = 6,   // a geometric node, and a barrier
  SGN_BRT_ROOT = 7    // what GetBRTRoot looks for
};

class TOVIK_API SYS_GeomNode {
 public:
  // Copies all three fields, the link included: this node then links into
  // the other node's ring, though no node of it links back.
  SYS_GeomNode &operator=(SYS_GeomNode const &other) = default;

  // 1 when the type is not SGN_NONE.
  int IsValid() const { return nodeType != SGN_NONE; }
  // 1 for the geometric types 1, 2 and 6.
  int IsGeomType() const { return IsGeom(nodeType); }
  short GetNodeType() const { return nodeType; }
  void SetNodeType(short type) { nodeType = type; }
  SGN_Type GetGeomType() const { return static_cast<SGN_Type>(nodeType); }
  void SetGeomType(SGN_Type type) { nodeType = type; }

  // Stores the link, nothing else.
  void SetRoot(SYS_GeomNode *next) { root = next; }
  // The next node, or null when the node is alone.
  SYS_GeomNode *GetRoot() const { return root == this ? nullptr : root; }
  // The node after `from`, or null when that is this node (or `from` or its
  // link is null).
  SYS_GeomNode *GetNextRoot(SYS_GeomNode const *from) const;
  // The first node of the type after this one, walking until this node
  // comes round again; null if none.
  SYS_GeomNode *GetRoot(short type) const;
  // The same walk, starting behind `from`.
  SYS_GeomNode *NextRoot(SYS_GeomNode *from, short type) const;
  SYS_GeomNode *GetNextRoot(SYS_GeomNode const *from, SGN_Type type) const;
  // The first node of a geometric type (1, 2 or 6) after this one.
  SYS_GeomNode *GetNextGeomRoot() const;
  SYS_GeomNode *GetDBRoot() const { return GetRoot(SGN_DB_ROOT); }
  SYS_GeomNode *GetBRTRoot() const { return GetRoot(SGN_BRT_ROOT); }
  // The node before this one, looked for from behind `from`: null when the
  // node after `from` is this node, or when a barrier comes first.
  SYS_GeomNode *GetPrevRoot(SYS_GeomNode const *from) const;

  // Puts the node right behind this one. Null or this node itself does
  // nothing (linking a node to itself would cut the ring behind it).
  void IncludeRoot(SYS_GeomNode *node);
  // Walks the ring of `start` to the node before `start`, gives that node
  // this node's link, and leaves this node alone: so n.ExcludeRoot(n) takes
  // n out of its ring. Does nothing when `start` is alone, or when a barrier
  // stands after the node right behind `start`.
  void ExcludeRoot(SYS_GeomNode *start);
  // Drops the next node, if there is a link.
  void ExcludeOwnRoot();
  // Drops the nodes of the type that directly follow this one.
  void ExcludeNearType(short type);
  // Drops every node of the type from the ring (this node excepted).
  void ExcludeByType(short type);

 protected:
  // A node alone, of no type.
  SYS_GeomNode() : root(this), nodeType(SGN_NONE), reserve(32767) {}
  // A copy has the other's type and reserve but starts alone: it is in no
  // ring until it is put in one.
  SYS_GeomNode(SYS_GeomNode const &other) : root(this), nodeType(other.nodeType), reserve(other.reserve) {}

 public:
  // Takes the node out of its ring, barrier or not, so that no ring keeps a
  // link to a node that is gone. A node whose ring does not lead back to it
  // has no place to leave and is simply gone.
  ~SYS_GeomNode();

 protected:
  static int IsGeom(short type) { return type == SGN_GEOM_A || type == SGN_GEOM_B || type == SGN_GEOM_END; }
  // The first node after `from`, up to this node, of the type (or of any
  // geometric type when anyGeom is set).
  SYS_GeomNode *Find(SYS_GeomNode const *from, short type, int anyGeom) const;

  SYS_GeomNode *root;  // the next node of the ring; this node when alone
  short nodeType;      // an SGN_Type
  short reserve;       // copied with the node; nothing here reads it
};

class TOVIK_API SYS_Geometry {
 public:
  SYS_Geometry() = default;
  SYS_Geometry(SYS_Geometry const &) = default;
  SYS_Geometry &operator=(SYS_Geometry const &) = default;

  // What kind of geometry this object is: none here.
  virtual SYS_GeometryType GetGeometry();
  // 0 here; derived classes say when they are sound.
  virtual int IsValid() const;
  virtual ~SYS_Geometry();
};

#endif  // TOVIK_SYS_GEOM_NODE_H
