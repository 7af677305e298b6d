// A queue of four places. Each value that leaves it is the one that came in at its turn.
module fifo(input clk, input put, input take, input [3:0] in, input [3:0] watched);
  reg [1:0] first = 0;
  reg [2:0] size = 0;
  wire puts = put && size != 4;
  wire takes = take && size != 0;
  reg [3:0] p0, p1, p2, p3;
  wire [1:0] last = first + size[1:0];
  reg [2:0] ahead = 0;
  reg is_watching = 0;
  reg [3:0] expected;
  wire [3:0] out = first == 0 ? p0 : first == 1 ? p1 : first == 2 ? p2 : p3;
  always @(posedge clk) begin
    if (puts) begin
      if (last == 0) p0 <= in;
      if (last == 1) p1 <= in;
      if (last == 2) p2 <= in;
      if (last == 3) p3 <= in;
      if (!is_watching && in == watched) begin
        is_watching <= 1;
        expected <= in;
        ahead <= size - takes;
      end
    end
    if (takes) first <= first + 1;
    size <= size + puts - takes;
    if (takes && is_watching) begin
      if (ahead == 0) is_watching <= 0;
      else ahead <= ahead - 1;
    end
    assert (size <= 4);
    if (takes && is_watching && ahead == 0) assert (out == expected);
  end
endmodule
